#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

std::string joined(const Array<String>& a) {
    std::string out;
    for (Uint32 i = 0; i < a.size(); i++) {
        if (i)
            out += ",";
        out += static_cast<const char*>(a[i].getCString());
    }
    return out;
}

Array<String> strings(std::initializer_list<const char*> items) {
    Array<String> a;
    for (const char* item : items)
        a.append(String(item));
    return a;
}

} // namespace

TEST(Array, ConstructorsFillAsDocumented) {
    Array<Uint32> zeros(3);
    ASSERT_EQ(zeros.size(), 3u);
    EXPECT_EQ(zeros[0] + zeros[1] + zeros[2], 0u);

    Array<Real64> copies(2, 1.5);
    EXPECT_EQ(copies[1], 1.5);

    const Sint64 raw[] = {1, -2, 3};
    Array<Sint64> fromItems(raw, 3);
    EXPECT_EQ(fromItems[1], -2);
    EXPECT_NE(fromItems.getData(), raw);

    Array<Uint8> empty;
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_NE(empty.getData(), nullptr);
}

TEST(Array, CopiesShareUntilOneIsChanged) {
    Array<String> a = strings({"x", "y"});
    Array<String> b = a;
    EXPECT_EQ(a.getData(), b.getData());

    b[0] = "changed";
    EXPECT_EQ(joined(a), "x,y");
    EXPECT_EQ(joined(b), "changed,y");

    Array<String> c = a;
    c.append("z");
    c.remove(0);
    EXPECT_EQ(joined(a), "x,y");
    EXPECT_EQ(joined(c), "y,z");

    Array<String> d = a;
    a.clear();
    EXPECT_EQ(joined(d), "x,y");

    Array<Uint16> e;
    e.append(7);
    Array<Uint16> f;
    f = e;
    f.swap(e);
    e.prepend(1);
    EXPECT_EQ(e.size(), 2u);
    EXPECT_EQ(f.size(), 1u);
}

TEST(Array, IndexingAndInsertCheckBounds) {
    Array<Uint32> a;
    EXPECT_THROW(a[0], IndexOutOfBoundsException);
    a.append(10);
    const Array<Uint32>& ca = a;
    EXPECT_EQ(ca[0], 10u);
    EXPECT_THROW(ca[1], IndexOutOfBoundsException);
    EXPECT_THROW(a[1], IndexOutOfBoundsException);

    a.insert(1, 30);
    a.insert(1, 20);
    a.insert(0, 0);
    EXPECT_THROW(a.insert(5, 99), IndexOutOfBoundsException);
    ASSERT_EQ(a.size(), 4u);
    for (Uint32 i = 0; i < 4; i++)
        EXPECT_EQ(a[i], i * 10);
}

TEST(Array, RemoveFollowsItsQuirks) {
    Array<String> a = strings({"a", "b", "c", "d"});
    a.remove(1, 0);
    EXPECT_EQ(joined(a), "a,b,c,d");

    // From the last element only that element goes, whatever the count.
    a.remove(3, 50);
    EXPECT_EQ(joined(a), "a,b,c");

    a.remove(0, 2);
    EXPECT_EQ(joined(a), "c");
    EXPECT_THROW(a.remove(1, 5), IndexOutOfBoundsException);
    EXPECT_THROW(a.remove(2), IndexOutOfBoundsException);
    a.remove(0);
    EXPECT_EQ(a.size(), 0u);
}

TEST(Array, OwnElementsCanBeAddedBack) {
    // Each of these reads from storage that the operation itself may move.
    Array<String> a = strings({"p", "q"});
    for (int i = 0; i < 20; i++)
        a.append(a[0]);
    EXPECT_EQ(a.size(), 22u);
    EXPECT_EQ(joined(a).substr(0, 7), "p,q,p,p");

    Array<String> b = strings({"1", "2"});
    b.appendArray(b);
    EXPECT_EQ(joined(b), "1,2,1,2");

    Array<String> c = strings({"k", "m"});
    c.grow(2, c[1]);
    c.prepend(c[3]);
    c.insert(1, c[0]);
    EXPECT_EQ(joined(c), "m,m,k,m,m,m");
}

TEST(Array, ReserveKeepsContentsAndCapacityGrows) {
    Array<CIMName> names;
    names.reserveCapacity(100);
    EXPECT_GE(names.getCapacity(), 100u);
    EXPECT_EQ(names.size(), 0u);
    names.append(CIMName("A"));
    Array<CIMName> shared = names;
    names.reserveCapacity(1000);
    EXPECT_GE(names.getCapacity(), 1000u);
    EXPECT_TRUE(names[0] == CIMName("a"));
    EXPECT_EQ(shared.size(), 1u);
}

TEST(Array, IndependentCopiesWorkOnSeveralThreads) {
    Array<String> original = strings({"base"});
    std::vector<std::thread> threads;
    std::vector<Uint32> sizes(4);
    for (Uint32 t = 0; t < 4; t++) {
        threads.emplace_back([&original, &sizes, t] {
            Uint32 total = 0;
            for (int round = 0; round < 500; round++) {
                Array<String> mine = original;
                mine.append(String("x"));
                mine[0] = String("mine");
                total += mine.size();
            }
            sizes[t] = total;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (Uint32 size : sizes)
        EXPECT_EQ(size, 1000u);
    EXPECT_EQ(joined(original), "base");
}
