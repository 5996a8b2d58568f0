#include "blob/ident_obj.h"

#include <gtest/gtest.h>

#include <string>

#include "blob/crypt_bit_blob.h"
#include "status/qel_status.h"
#include "support/hex_bytes.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

namespace {

std::string Hex(const CRYPTOAPI_BLOB& blob) { return ToHex(blob.pbData, blob.cbData); }

IdentObj Blob(const std::string& bytes) {
    return IdentObj(bytes.data(), static_cast<ulong32>(bytes.size()));
}

// --- Life and content ----------------------------------------------------------------------------

TEST(Blob, OwnsACopyOfItsBytes) {
    unsigned char bytes[] = {1, 2, 3};
    CRYPTOAPI_BLOB plain = {3, bytes};
    const IdentObj from_bytes(bytes, 3);
    const IdentObj from_plain(plain);
    const IdentObj from_blob(from_plain);
    IdentObj assigned, assigned_plain("x", 1);
    assigned = from_blob;
    assigned_plain = plain;
    bytes[0] = 9;
    const IdentObj* const all[] = {&from_bytes, &from_plain, &from_blob, &assigned,
                                   &assigned_plain};
    for (const IdentObj* blob : all) {
        EXPECT_EQ("01 02 03", Hex(*blob));
        EXPECT_EQ(7u, blob->GetObjectSize());
    }
    EXPECT_EQ("00 00 00", Hex(IdentObj(nullptr, 3)));  // not a copy of anything: zeros
    EXPECT_EQ(nullptr, IdentObj("x", 0).pbData);
    EXPECT_TRUE(IdentObj(CRYPTOAPI_BLOB{5, nullptr}).IsEmpty());
}

TEST(Blob, TakesItsOwnBytes) {
    IdentObj blob = Blob("abcdef");
    const IdentObj& same = blob;
    blob = same;
    EXPECT_EQ("61 62 63 64 65 66", Hex(blob));
    blob.AddData(blob.pbData + 1, 3);
    EXPECT_EQ("61 62 63 64 65 66 62 63 64", Hex(blob));
    blob.Assign(blob.pbData + 2, 2);
    EXPECT_EQ("63 64", Hex(blob));
    blob = "4142";
    blob.AddData("", 1);
    EXPECT_EQ(2u, blob.SetByHexString(reinterpret_cast<const char*>(blob.pbData)));
    EXPECT_EQ("41 42", Hex(blob));
}

TEST(Blob, ChangesItsSize) {
    IdentObj blob = Blob("abcd");
    blob.Realloc(2);
    EXPECT_EQ("61 62", Hex(blob));
    blob.Realloc(3);
    ASSERT_EQ(3u, blob.cbData);
    EXPECT_EQ('b', blob.pbData[1]);
    const BYTE* const before = blob.pbData;
    blob.Realloc(3);
    EXPECT_EQ(before, blob.pbData);
    blob.AddData(nullptr, 2);
    ASSERT_EQ(5u, blob.cbData);
    EXPECT_EQ('a', blob.pbData[0]);
    blob.AddData("x", 0);
    EXPECT_EQ(5u, blob.cbData);
    blob.Realloc(0);
    EXPECT_EQ(nullptr, blob.pbData);
    blob.AddData("xy", 2);
    EXPECT_EQ("78 79", Hex(blob));
    blob.Alloc(7);
    EXPECT_EQ(7u, blob.cbData);
    blob.Assign(nullptr, 7);
    EXPECT_TRUE(blob.IsEmpty());
    blob = "text";
    EXPECT_EQ("74 65 78 74", Hex(blob));
    blob = "";
    EXPECT_EQ(nullptr, blob.pbData);
    blob = static_cast<const char*>(nullptr);
    EXPECT_TRUE(blob.IsEmpty());
}

TEST(Blob, CallsWhatADerivedClassOverrides) {
    struct Counting : IdentObj {
        void Realloc(ulong32 size) override { calls += 1, IdentObj::Realloc(size); }
        void Empty() override { calls += 10, IdentObj::Empty(); }
        int calls = 0;
    } blob;
    IdentObj& base = blob;
    base.Realloc(3);
    base.Empty();
    EXPECT_EQ(11, blob.calls);
    EXPECT_EQ(nullptr, blob.pbData);
}

TEST(Blob, IsReversedAndReadFromDigits) {
    EXPECT_EQ("63 62 61", Hex(IdentObj::Reverse(Blob("abc"))));
    EXPECT_TRUE(IdentObj::Reverse(IdentObj()).IsEmpty());
    IdentObj blob = Blob("old");
    EXPECT_EQ(2u, blob.SetByHexString("0a0B"));
    EXPECT_EQ("0A 0B", Hex(blob));
    EXPECT_EQ(2u, blob.SetByHexString(" 1 2\n3x"));
    EXPECT_EQ("12 30", Hex(blob));
    EXPECT_EQ(0u, blob.SetByHexString("no digits"));
    EXPECT_EQ(nullptr, blob.pbData);
    EXPECT_EQ(0u, blob.SetByHexString(nullptr));
}

int calls_before_failure = 0;

void* FailingMalloc(std::size_t size) {
    return calls_before_failure-- > 0 ? ::malloc(size) : nullptr;
}
void* NoCalloc(std::size_t, std::size_t) { return nullptr; }
void* NoRealloc(void*, std::size_t) { return nullptr; }

TEST(Blob, ThrowsWhenMemoryRunsOutAndKeepsItsContent) {
    IdentObj blob = Blob("abc");
    const IdentObj other = Blob("defg");
    const auto expect_thrown = [](auto call) {
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (const XQELStatus& status) {
            EXPECT_EQ(16, status.Status());
            EXPECT_THROW(status.SetError(), XQELStatus);
        }
    };
    {
        const ImportPatch no_malloc(kLibrary, "malloc", &FailingMalloc);
        const ImportPatch no_calloc(kLibrary, "calloc", &NoCalloc);
        const ImportPatch no_realloc(kLibrary, "realloc", &NoRealloc);
        calls_before_failure = 0;
        expect_thrown([&] { blob = other; });
        expect_thrown([&] { blob = "text"; });
        expect_thrown([&] { blob.AddData("x", 1); });
        expect_thrown([&] { blob.Realloc(5); });
        expect_thrown([&] { blob.SetByHexString("12"); });
        expect_thrown([&] { blob.ReadData("\1\0\0\0x", 5); });
        expect_thrown([&] { IdentObj zeros(nullptr, 5); });
    }
    EXPECT_EQ("61 62 63", Hex(blob));
    expect_thrown([&] { blob.AddData("x", 0xFFFFFFFD); });  // more than 32 bits can count
    EXPECT_EQ("61 62 63", Hex(blob));
    const ImportPatch no_malloc(kLibrary, "malloc", &FailingMalloc);
    expect_thrown([&] { blob.Alloc(5); });
    EXPECT_EQ(nullptr, blob.pbData);
    EXPECT_TRUE(blob.IsEmpty());
}

// --- Comparison ----------------------------------------------------------------------------------

TEST(Blob, IsOrderedByLengthThenByBytes) {
    const IdentObj ascending[] = {IdentObj(),   Blob("a"),  Blob("b"),
                                  Blob("\xFF"), Blob("ab"), Blob("b\x01")};
    for (const auto& a : ascending) {
        for (const auto& b : ascending) {
            SCOPED_TRACE(Hex(a) + " / " + Hex(b));
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
            const CRYPTOAPI_BLOB plain = {b.cbData, b.pbData};
            EXPECT_EQ(&a == &b, a == plain);
            EXPECT_EQ(&a != &b, a != plain);
        }
    }
    EXPECT_TRUE(IdentObj() == (CRYPTOAPI_BLOB{0, nullptr}));
}

TEST(Blob, IsComparedWithAStringAsAText) {
    EXPECT_TRUE(Blob("abc") == CQELString("abc"));
    EXPECT_FALSE(Blob("abc") != CQELString("abc"));
    EXPECT_FALSE(Blob("abc") == CQELString("abcd"));
    EXPECT_FALSE(Blob("abcd") == CQELString("abc"));
    EXPECT_TRUE(Blob(std::string("abc\0d", 5)) == CQELString("abc"));
    EXPECT_TRUE(IdentObj() == CQELString());
    EXPECT_FALSE(IdentObj() == CQELString("a"));
    EXPECT_FALSE(Blob("a") == CQELString());
    EXPECT_TRUE(Blob(std::string(1, '\0')) == CQELString());
}

TEST(BitBlob, IsLessOnlyInBothParts) {
    BYTE one = 1, two = 2;
    const CQELCryptBitBlob a(CRYPT_BIT_BLOB{1, &one, 0});
    const CQELCryptBitBlob b(CRYPT_BIT_BLOB{1, &two, 3});
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b > a);
    EXPECT_FALSE(a > b);
    const CQELCryptBitBlob c(CRYPT_BIT_BLOB{1, &one, 3});
    const CQELCryptBitBlob d(CRYPT_BIT_BLOB{1, &two, 0});
    EXPECT_FALSE(c < d || c > d || c == d);
    EXPECT_TRUE(c != d);
    EXPECT_FALSE(a < c || a > c || a == c);  // the same bytes
    EXPECT_FALSE(a < d || a > d || a == d);  // the same count
    EXPECT_TRUE(a == CQELCryptBitBlob(a));
}

TEST(BitBlob, KeepsItsUnusedBitsWhateverItsBytesAre) {
    BYTE bytes[] = {1, 2};
    CQELCryptBitBlob blob(CRYPT_BIT_BLOB{2, bytes, 5});
    blob.Realloc(9);
    EXPECT_EQ(5u, blob.cUnusedBits);
    blob.Empty();
    EXPECT_EQ(5u, blob.cUnusedBits);
    CQELCryptBitBlob other;
    EXPECT_EQ(0u, other.cUnusedBits);
    other = blob;
    EXPECT_EQ(5u, other.cUnusedBits);
    other = CRYPT_BIT_BLOB{2, bytes, 40};
    EXPECT_EQ("01 02", Hex(other));
    EXPECT_EQ(40u, other.cUnusedBits);
}

// --- The platform --------------------------------------------------------------------------------

TEST(Blob, GoesToThePlatformAsItIs) {
    IdentObj secret = Blob("secret");
    DATA_BLOB sealed{};
    ASSERT_TRUE(CryptProtectData(&secret, nullptr, nullptr, nullptr, nullptr,
                                 CRYPTPROTECT_UI_FORBIDDEN, &sealed));
    IdentObj kept(sealed);
    LocalFree(sealed.pbData);
    EXPECT_GT(kept.cbData, secret.cbData);
    DATA_BLOB opened{};
    ASSERT_TRUE(CryptUnprotectData(&kept, nullptr, nullptr, nullptr, nullptr,
                                   CRYPTPROTECT_UI_FORBIDDEN, &opened));
    EXPECT_TRUE(secret == opened);
    LocalFree(opened.pbData);
}

}  // namespace
