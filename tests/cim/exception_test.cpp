#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Exception.h>
#include <exception>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>

PEGASUS_USING_PEGASUS;

static_assert(!std::is_base_of<std::exception, Exception>::value,
              "callers catch Exception, not std::exception");
static_assert(std::is_base_of<Exception, CIMException>::value, "CIMException is an Exception");

namespace {

std::string messageOf(const Exception& e) {
    return std::string(static_cast<const char*>(e.getMessage().getCString()));
}

} // namespace

// The messages of the exceptions other tests raise are checked where they
// are raised; these are the ones nothing else throws.
TEST(Exception, MessagesReadAsDocumented) {
    EXPECT_EQ(messageOf(Exception("plain")), "plain");
    EXPECT_EQ(messageOf(TypeMismatchException("why")), "type mismatch: why");
    EXPECT_EQ(messageOf(DynamicCastFailedException()), "dynamic cast failed");
}

TEST(Exception, CopiesAreDeepAndKeepTheMessageThroughTheBase) {
    Exception* original = new InvalidNameException("n");
    Exception copy(*original);
    Exception assigned("other");
    assigned = *original;
    delete original;
    EXPECT_EQ(messageOf(copy), "The CIM name is not valid: n");
    EXPECT_EQ(messageOf(assigned), "The CIM name is not valid: n");
}

TEST(StatusAndType, NamesAreTheEnumeratorsOwn) {
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_METHOD_NOT_AVAILABLE),
                 "CIM_ERR_METHOD_NOT_AVAILABLE");
    // The codes travel on the wire, and 20 follows a gap after 17.
    EXPECT_EQ(int(CIM_ERR_NAMESPACE_NOT_EMPTY), 20);
    EXPECT_EQ(int(CIM_ERR_SERVER_IS_SHUTTING_DOWN), 28);
    EXPECT_STREQ(cimTypeToString(CIMTYPE_REAL32), "real32");
    EXPECT_EQ(int(CIMTYPE_INSTANCE), 16);
}
