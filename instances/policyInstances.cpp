// The instance of an installed placement policy, with its rules as texts.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addProperty;
using instances::appendKey;

CIMInstance VexaProvider::createPolicyInstance(ClusterInfo* cluster, PolicyInfo* policy) {
    CIMInstance instance(VEXA_POLICY);
    addProperty(instance, "SystemCreationClassName", "KOR_VEXA_ManagementSystem");
    addProperty(instance, "SystemName", cluster->clusterName);
    addProperty(instance, "CreationClassName", "KOR_VEXA_Policy");
    addProperty(instance, "PolicyGroupName", policy->name);
    addProperty(instance, "ElementName", policy->name);
    addProperty(instance, "vexaInstalledBy", policy->installedBy);
    addProperty(instance, "vexaInstallationTime", policy->installTime);

    // Rules keep the policy's order: the first matching rule places a file.
    int ruleCount = static_cast<int>(policy->ruleList.size());
    ts_log(0, "VexaProvider::createPolicyInstance", "nRules = %d\n", ruleCount);
    Array<String> rules;
    for (int i = 0; i < ruleCount; i++) {
        PolicyRule* rule = policy->ruleList.at(static_cast<size_t>(i));
        ts_log(0, "VexaProvider::createPolicyInstance", "ruleDesc = %s\n", rule->description);
        rules.append(String(rule->description));
    }
    // An empty array, not null: the policy is known and has no rules.
    addProperty(instance, "vexaRules", CIMValue(rules));

    Array<CIMKeyBinding> keys;
    appendKey(keys, "SystemCreationClassName", "KOR_VEXA_ManagementSystem");
    appendKey(keys, "SystemName", cluster->clusterName);
    appendKey(keys, "CreationClassName", "KOR_VEXA_Policy");
    appendKey(keys, "PolicyGroupName", policy->name);
    instances::setInstancePath(instance, VEXA_POLICY, keys);
    return instance;
}
