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

TEST(Exception, MessagesReadAsDocumented) {
    EXPECT_EQ(messageOf(Exception("plain")), "plain");
    EXPECT_EQ(messageOf(IndexOutOfBoundsException()), "index out of bounds");
    EXPECT_EQ(messageOf(AlreadyExistsException("property \"P\"")),
              "already exists: property \"P\"");
    EXPECT_EQ(messageOf(InvalidNameException("a-b")), "The CIM name is not valid: a-b");
    EXPECT_EQ(messageOf(InvalidNamespaceNameException("x/")), "invalid CIM namespace name: x/");
    EXPECT_EQ(messageOf(UninitializedObjectException()), "uninitialized object");
    EXPECT_EQ(messageOf(TypeMismatchException()), "type mismatch");
    EXPECT_EQ(messageOf(TypeMismatchException("why")), "type mismatch: why");
    EXPECT_EQ(messageOf(DynamicCastFailedException()), "dynamic cast failed");
    EXPECT_EQ(messageOf(InvalidDateTimeFormatException()), "invalid datetime format");
    EXPECT_EQ(messageOf(DateTimeOutOfRangeException("x")), "DateTime is out of range : x");
    EXPECT_EQ(messageOf(MalformedObjectNameException("A.k=")), "malformed object name: A.k=");
}

TEST(Exception, CopiesAreDeepAndKeepTheMessageThroughTheBase) {
    Exception* original = new InvalidNameException("n");
    Exception copy(*original);
    Exception assigned("other");
    assigned = *original;
    delete original;
    EXPECT_EQ(messageOf(copy), "The CIM name is not valid: n");
    EXPECT_EQ(messageOf(assigned), "The CIM name is not valid: n");

    try {
        throw TypeMismatchException();
    } catch (const Exception& e) {
        EXPECT_EQ(messageOf(e), "type mismatch");
    }
}

TEST(StatusAndType, NamesAreTheEnumeratorsOwn) {
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_SUCCESS), "CIM_ERR_SUCCESS");
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_METHOD_NOT_AVAILABLE),
                 "CIM_ERR_METHOD_NOT_AVAILABLE");
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_METHOD_NOT_FOUND), "CIM_ERR_METHOD_NOT_FOUND");
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_NAMESPACE_NOT_EMPTY), "CIM_ERR_NAMESPACE_NOT_EMPTY");
    EXPECT_STREQ(cimStatusCodeToString(CIM_ERR_SERVER_IS_SHUTTING_DOWN),
                 "CIM_ERR_SERVER_IS_SHUTTING_DOWN");
    EXPECT_EQ(int(CIM_ERR_NAMESPACE_NOT_EMPTY), 20);
    EXPECT_EQ(int(CIM_ERR_SERVER_IS_SHUTTING_DOWN), 28);

    EXPECT_STREQ(cimTypeToString(CIMTYPE_BOOLEAN), "boolean");
    EXPECT_STREQ(cimTypeToString(CIMTYPE_REAL32), "real32");
    EXPECT_STREQ(cimTypeToString(CIMTYPE_DATETIME), "datetime");
    EXPECT_STREQ(cimTypeToString(CIMTYPE_INSTANCE), "instance");
    EXPECT_EQ(int(CIMTYPE_INSTANCE), 16);
}
