#include "blob/ident_obj.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "blob/crypt_bit_blob.h"
#include "status/qel_status.h"
#include "support/import_patch.h"
#include "text/qel_string.h"

namespace {

std::string Text(const CRYPTOAPI_BLOB& blob) {
    return {reinterpret_cast<const char*>(blob.pbData), blob.cbData};
}

IdentObj Blob(const std::string& bytes) {
    return IdentObj(bytes.data(), static_cast<ulong32>(bytes.size()));
}

CQELCryptBitBlob BitBlob(BYTE byte, ulong32 unused_bits) {
    return CRYPT_BIT_BLOB{1, &byte, unused_bits};
}

// --- Life and content ----------------------------------------------------------------------------

TEST(Blob, OwnsACopyOfItsBytes) {
    BYTE bytes[] = {'a', 'b', 'c'};
    const CRYPTOAPI_BLOB plain = {3, bytes};
    const IdentObj from_bytes(bytes, 3), from_plain(plain), from_blob(from_plain);
    IdentObj assigned, assigned_plain("x", 1);
    assigned = from_blob;
    assigned_plain = plain;
    bytes[0] = '~';
    for (const IdentObj& blob : {from_bytes, from_plain, from_blob, assigned, assigned_plain}) {
        EXPECT_EQ("abc", Text(blob));
        EXPECT_EQ(7u, blob.GetObjectSize());
    }
    EXPECT_EQ(std::string(3, '\0'), Text(IdentObj(nullptr, 3)));  // not a copy: zeros
    EXPECT_TRUE(IdentObj(CRYPTOAPI_BLOB{5, nullptr}).IsEmpty());
}

TEST(Blob, TakesOtherBytesAndItsOwn) {
    IdentObj blob = Blob("abcdef");
    const struct {
        std::function<void()> change;
        std::string bytes;
    } steps[] = {
        {[&] { blob = std::as_const(blob); }, "abcdef"},
        {[&] { blob.AddData(blob.pbData + 1, 3); }, "abcdefbcd"},
        {[&] { blob.Assign(blob.pbData + 2, 2); }, "cd"},
        {[&] { blob.Realloc(1); }, "c"},
        {[&] { blob.Realloc(0); }, ""},
        {[&] { blob.AddData("xy", 2); }, "xy"},
        {[&] { blob.AddData("x", 0); }, "xy"},
        {[&] { blob.Assign(nullptr, 7); }, ""},
        {[&] { blob = "41x"; }, "41x"},
        {[&] { blob.SetByHexString(reinterpret_cast<const char*>(blob.pbData)); }, "A"},
        {[&] { blob.SetByHexString(nullptr); }, ""},
        {[&] { blob = IdentObj::Reverse(Blob("abc")); }, "cba"},
        {[&] { blob.SetByHexString("no digits"); }, ""},
        {[&] { blob = IdentObj::Reverse(blob); }, ""},
        {[&] { blob = "text"; }, "text"},
        {[&] { blob = static_cast<const char*>(nullptr); }, ""},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(&step - steps);
        step.change();
        EXPECT_EQ(step.bytes, Text(blob));
        EXPECT_EQ(step.bytes.empty(), blob.pbData == nullptr);
    }
    blob.Alloc(7);
    blob.AddData(nullptr, 300);
    EXPECT_EQ(307u, blob.cbData);
    EXPECT_EQ(2u, blob.SetByHexString("0a0B"));
}

void* NoMalloc(std::size_t) { return nullptr; }
void* NoCalloc(std::size_t, std::size_t) { return nullptr; }
void* NoRealloc(void*, std::size_t) { return nullptr; }

TEST(Blob, ThrowsWhenMemoryRunsOutAndKeepsItsContent) {
    IdentObj blob = Blob("abc");
    const IdentObj other = Blob("defg");
    const std::function<void()> calls[] = {
        [&] { blob = other; },
        [&] { blob = "text"; },
        [&] { blob.AddData("x", 1); },
        [&] { blob.AddData("x", 0xFFFFFFFD); },  // more than 32 bits can count
        [&] { blob.Realloc(5); },
        [&] { blob.SetByHexString("12"); },
        [&] { blob.ReadData("\1\0\0\0x", 5); },
        [&] { IdentObj(nullptr, 5).Empty(); },
        [&] { blob.Alloc(5); },  // the last one: it gives the content up
    };
    const ImportPatch no_malloc(kLibrary, "malloc", &NoMalloc);
    const ImportPatch no_calloc(kLibrary, "calloc", &NoCalloc);
    const ImportPatch no_realloc(kLibrary, "realloc", &NoRealloc);
    for (const auto& call : calls) {
        SCOPED_TRACE(&call - calls);
        EXPECT_EQ("abc", Text(blob));
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (const XQELStatus& status) {
            EXPECT_EQ(16, status.Status());
            EXPECT_THROW(status.SetError(), XQELStatus);
        }
    }
    EXPECT_TRUE(blob.IsEmpty() && blob.pbData == nullptr);
}

// --- Comparison ----------------------------------------------------------------------------------

template <typename T>
int Relations(const T& a, const T& b) {
    return (a < b) | (a > b) << 1 | (a == b) << 2 | (a != b) << 3;
}

TEST(Blob, IsOrderedByLengthThenByBytes) {
    const IdentObj ascending[] = {IdentObj(),   Blob("a"),  Blob("b"),
                                  Blob("\xFF"), Blob("ab"), Blob("b\x01")};
    for (const auto& a : ascending) {
        for (const auto& b : ascending) {
            SCOPED_TRACE(Text(a) + " / " + Text(b));
            const CRYPTOAPI_BLOB plain = {b.cbData, b.pbData};
            EXPECT_EQ(Relations(&a, &b), Relations(a, b));
            EXPECT_TRUE((a == plain) == (&a == &b) && (a != plain) == (&a != &b));
        }
    }
}

TEST(Blob, IsComparedWithAStringAsAText) {
    const struct {
        IdentObj blob;
        const char *same, *other;
    } cases[] = {
        {Blob("abc"), "abc", "abcd"},
        {Blob(std::string("abc\0d", 5)), "abc", "ab"},
        {Blob(std::string(1, '\0')), "", "a"},
        {IdentObj(), "", "a"},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(c.blob == CQELString(c.same) && !(c.blob != CQELString(c.same))) << c.same;
        EXPECT_TRUE(c.blob != CQELString(c.other) && !(c.blob == CQELString(c.other))) << c.other;
    }
}

TEST(BitBlob, IsLessOnlyInBothParts) {
    const CQELCryptBitBlob a = BitBlob(1, 0), b = BitBlob(2, 3), c = BitBlob(1, 3),
                           d = BitBlob(2, 0);
    EXPECT_EQ(Relations(1, 2), Relations(a, b));
    EXPECT_EQ(Relations(2, 1), Relations(b, a));
    EXPECT_EQ(Relations(1, 1), Relations(a, BitBlob(1, 0)));
    constexpr int kNoOrder = 8;
    EXPECT_EQ(kNoOrder, Relations(c, d));
    EXPECT_EQ(kNoOrder, Relations(a, c));  // the same bytes
    EXPECT_EQ(kNoOrder, Relations(a, d));  // the same count
}

TEST(BitBlob, KeepsItsUnusedBitsWhateverItsBytesAre) {
    CQELCryptBitBlob blob = BitBlob('x', 5), other;
    EXPECT_EQ(0u, other.cUnusedBits);
    other = blob;
    blob.Realloc(9);
    blob.Empty();
    EXPECT_TRUE(blob.cUnusedBits == 5 && other.cUnusedBits == 5);
    other = CRYPT_BIT_BLOB{1, other.pbData, 40};
    EXPECT_EQ("x", Text(other));
    EXPECT_EQ(40u, other.cUnusedBits);
}

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
