// Extrinsic methods of the cluster configuration service: the class test,
// the dispatch on the method name and the answer every call ends with.
#include "cimProvider.h"

#include <Pegasus/Common/Exception.h>

#include <qzantras/ts_log.h>

#include <exception>

#include "methodParameters.h"

PEGASUS_USING_PEGASUS;

namespace {

const CIMName CONFIGURATION_SERVICE("KOR_VEXA_ClusterConfigurationService");

} // namespace

void VexaProvider::invokeMethod(const OperationContext&, const CIMObjectPath& objectReference,
                                const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                                MethodResultResponseHandler& handler) {
    handler.processing();
    Uint32 rc = 0;
    if (objectReference.getClassName().equal(CONFIGURATION_SERVICE)) {
        Array<CIMParamValue> out;
        bool signedFailure = false;
        try {
            // The order is part of the contract: the last row takes every
            // name that matched nothing above it.
            if (methodName.equal(CIMName("ModifyNode"))) {
                ts_log(0, "VexaProvider::invokeMethod", "ModifyNode\n");
                rc = modifyNode(inParameters, handler);
            } else if (methodName.equal(CIMName("CreateFileset"))) {
                rc = createFileset(inParameters, out);
            } else if (methodName.equal(CIMName("DeleteFileset"))) {
                rc = deleteFileset(inParameters, out);
            } else if (methodName.equal(CIMName("EditFileset"))) {
                rc = editFileset(inParameters, out);
            } else if (methodName.equal(CIMName("EditQuota"))) {
                rc = editQuota(inParameters, out);
            } else if (methodName.equal(CIMName("LinkFileset"))) {
                rc = linkFileset(inParameters, out);
            } else if (methodName.equal(CIMName("UnlinkFileset"))) {
                rc = unlinkFileset(inParameters, out);
            } else if (methodName.equal(CIMName("ChangeOwnerAndOrGroup"))) {
                rc = changeOwnerAndOrGroup(inParameters);
                signedFailure = rc != 0;
            } else if (methodName.equal(CIMName("ChangeFilesetJnxnOwnership"))) {
                rc = changeFilesetJunction(false, inParameters, out);
            } else if (methodName.equal(CIMName("ChangeFilesetJnxnACL"))) {
                rc = changeFilesetJunction(true, inParameters, out);
            } else {
                rc = modifyRaidElement(methodName, inParameters);
            }
        } catch (const Exception& e) {
            // Every outcome is a return code; nothing escapes to the server.
            ts_log(2, "VexaProvider::invokeMethod", "%s failed: %s\n",
                   methods::utf8(methodName.getString()).c_str(),
                   methods::utf8(e.getMessage()).c_str());
            out.clear();
            methods::addMessage(out, "Internal provider error: " + methods::utf8(e.getMessage()));
            rc = 1;
        } catch (const std::exception& e) {
            ts_log(2, "VexaProvider::invokeMethod", "%s failed: %s\n",
                   methods::utf8(methodName.getString()).c_str(), e.what());
            out.clear();
            methods::addMessage(out, std::string("Internal provider error: ") + e.what());
            rc = 1;
        }
        if (out.size() > 0) {
            handler.deliverParamValue(out);
        }
        // ChangeOwnerAndOrGroup's clients read a failure as a signed value
        // first; the unsigned one below follows it as for every method.
        if (signedFailure) {
            handler.deliver(CIMValue(Sint32(rc)));
        }
    }
    handler.deliver(CIMValue(rc));
    handler.complete();
}
