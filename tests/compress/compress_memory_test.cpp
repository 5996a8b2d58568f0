#include "compress/compress_memory.h"

#include <gtest/gtest.h>

#include <string>

#include "base/byte_order.h"
#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

// 31 equal letters: a literal and matches of 16 and 14. The shortest text of that kind that gains.
const std::string kText(31, 'a');
const std::string kContainer = FromHex(
    "FF FF FF FF 43 4F 4D 50 1F 00 00 00 06 00 00 00 01 00 00 00 18 00 00 00 01 61 F0 FD FF FB");

// The container with one byte changed.
std::string With(std::size_t at, int byte) {
    std::string changed = kContainer;
    changed[at] = static_cast<char>(byte);
    return changed;
}

TEST(CompressMemory, WritesHeaderAndPayloadIntoJustEnoughRoom) {
    GuardedBuffer container(kContainer.size());
    std::memset(container.data(), 0xCC, container.size());  // the reserved bytes become zeros
    ulong32 size = 30;
    EXPECT_EQ(1, CompressMemory(kText.data(), 31, container.data(), &size, 1));
    EXPECT_EQ(30u, size);
    EXPECT_EQ(ToHex(kContainer.data(), 30), ToHex(container.data(), 30));
}

TEST(CompressMemory, FailsWithoutRoomOrGainOrMethod) {
    const struct {
        const char* what;
        ulong32 src_len, room;
        unsigned char method;
    } cases[] = {
        {"no room for the header", 31, 23, 1},
        {"no room at all", 31, 0, 1},
        {"no room for a header of its own", 31, 23, 2},
        {"one byte of the payload does not fit", 31, 29, 1},
        {"the container is as long as the text", 30, 60, 1},
        {"nothing to compress", 0, 60, 1},
        {"method 0", 31, 60, 0},
        {"method 3", 31, 60, 3},
        {"method 255", 31, 60, 255},
        {"a placed payload that saves nothing", 31, 31, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        GuardedBuffer container(c.room);
        std::memset(container.data(), 0xCC, c.room);
        ulong32 size = c.room;
        EXPECT_EQ(0, CompressMemory(kText.data(), c.src_len, container.data(), &size, c.method));
        EXPECT_EQ(c.room, size);
        EXPECT_TRUE(c.room == 0 || container.data()[0] == 0xCC)
            << "a header in spite of the failure";
    }
}

TEST(CompressMemory, MethodTwoWritesOnlyTheHeader) {
    GuardedBuffer container(30);
    std::memset(container.data(), 0xCC, 30);
    ulong32 size = 30;
    EXPECT_EQ(1, CompressMemory(nullptr, 31, container.data(), &size, 2));
    EXPECT_EQ(30u, size);
    EXPECT_EQ(
        "FF FF FF FF 43 4F 4D 50 1F 00 00 00 06 00 00 00 02 00 00 00 18 00 00 00 CC CC CC CC CC CC",
        ToHex(container.data(), 30));
    EXPECT_EQ(1, IsMemoryCompressed(container.data(), 30));
    EXPECT_EQ(0, DecompressMemory(container.data(), container.data(), &size));
    EXPECT_EQ(0, DecompressMemory2(container.data(), container.data(), &size, nullptr));
}

TEST(CompressMemory, FailsOnNullPointers) {
    unsigned char bytes[64] = {};
    ulong32 size = sizeof bytes;
    EXPECT_EQ(0, CompressMemory(nullptr, 31, bytes, &size, 1));
    EXPECT_EQ(0, CompressMemory(bytes, 31, nullptr, &size, 1));
    EXPECT_EQ(0, CompressMemory2(bytes, 31, bytes, nullptr, nullptr));
    EXPECT_EQ(0, DecompressMemory(nullptr, bytes, &size));
    EXPECT_EQ(0, DecompressMemory2(nullptr, bytes, &size, nullptr));
    std::string container = kContainer;
    EXPECT_EQ(0, DecompressMemory(container.data(), nullptr, &size));
    EXPECT_EQ(0, DecompressMemory(container.data(), bytes, nullptr));
    EXPECT_EQ(sizeof bytes, size);
}

TEST(IsMemoryCompressed, WantsOneHeaderWhoseSizesMakeUpTheLength) {
    std::string wide = With(20, 25);  // a longer header is fine when the sizes still add up
    wide[12] = 5;
    std::string wrapped = With(20, 0xF0);  // 0xFFFFFFF0 + 0x2E is 30 in 32 bits only
    wrapped.replace(21, 3, "\xFF\xFF\xFF");
    wrapped[12] = 0x2E;
    std::string narrow = With(20, 23);
    narrow[12] = 7;
    const struct {
        const char* what;
        std::string bytes;
        int expected;
    } cases[] = {
        {"a container", kContainer, 1},
        {"any original size", With(8, 77), 1},
        {"any method", With(16, 77), 1},
        {"any reserved bytes", With(17, 77), 1},
        {"a longer header", wide, 1},
        {"a shorter header", narrow, 0},
        {"no marker", With(3, 0xFE), 0},
        {"no signature", With(7, 'p'), 0},
        {"a payload too long", With(12, 7), 0},
        {"a payload too short", With(12, 5), 0},
        {"sizes beyond 32 bits", wrapped, 0},
        {"a byte behind the container", kContainer + "x", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        GuardedBuffer data(c.bytes.data(), c.bytes.size());
        EXPECT_EQ(c.expected, IsMemoryCompressed(data.data(), static_cast<ulong32>(data.size())));
    }
    for (ulong32 length = 0; length < 30; ++length) {
        GuardedBuffer cut(kContainer.data(), length);
        EXPECT_EQ(0, IsMemoryCompressed(cut.data(), length)) << length;
    }
    EXPECT_EQ(0, IsMemoryCompressed(nullptr, 30));
}

TEST(DecompressMemory, TrustsEverythingButTheMethod) {
    std::string moved = With(20, 26);
    moved.insert(24, "??");
    for (std::string container : {kContainer, With(0, 0), With(4, 'X'), moved}) {
        GuardedBuffer text(kText.size() + 1);
        ulong32 size = 0;
        EXPECT_EQ(1, DecompressMemory(container.data(), text.data(), &size));
        EXPECT_EQ(kText, std::string(text.text(), size));
    }
    for (const int method : {0, 2, 3, 255}) {
        ulong32 size = 77;
        unsigned char text[32];
        EXPECT_EQ(0, DecompressMemory(With(16, method).data(), text, &size)) << method;
        EXPECT_EQ(77u, size);
    }
}

TEST(DecompressMemory, PutsTheBytesProducedIntoTheSource) {
    std::string container = With(8, 40);  // claims 40 bytes, yields 31
    unsigned char text[41];
    ulong32 size = 0;
    EXPECT_EQ(1, DecompressMemory(container.data(), text, &size));
    EXPECT_EQ(31u, size);
    EXPECT_EQ(kContainer, container);
}

TEST(DecompressMemory, StopsOneByteBehindTheOriginalSizeOfALyingHeader) {
    const std::string original = With(8, 30);
    std::string container = original;
    GuardedBuffer text(31);
    ulong32 size = 77;
    EXPECT_EQ(0, DecompressMemory(container.data(), text.data(), &size));
    EXPECT_EQ(77u, size);
    EXPECT_EQ(original, container);
    EXPECT_EQ(kText, std::string(text.text(), 31));
}

// Records its calls; returns values that the library would never make up.
class Callback : public CAbstractCallbackCompress {
public:
    explicit Callback(unsigned char method) : method_(method) {}
    ~Callback() override { calls += 'D'; }
    unsigned char ChooseMethod() override {
        calls += 'm';
        return method_;
    }
    int Compress(const void* src, ulong32 src_len, void* dst, ulong32* dst_len) override {
        calls += 'c';
        EXPECT_EQ(kText.data(), src);
        EXPECT_EQ(31u, src_len);
        static_cast<char*>(dst)[16] = static_cast<char>(method_);
        *dst_len = 55;
        return -17;
    }
    int Decompress(const void*, void*, ulong32* dst_len) override {
        calls += 'd';
        *dst_len = 66;
        return -18;
    }

    static std::string calls;

private:
    unsigned char method_;
};
std::string Callback::calls;

TEST(CompressMemory2, AsksTheCallbackForItsMethod) {
    const struct {
        unsigned char method;
        int packed;
        ulong32 packed_size;
        int unpacked;
        ulong32 size;
        const char* calls;
    } cases[] = {
        {1, 1, 30, 1, 31, "m"},
        {2, 1, 30, 0, 77, "m"},
        {0, -17, 55, -18, 66, "mcd"},
        {255, -17, 55, -18, 66, "mcd"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.method);
        Callback callback(c.method);
        Callback::calls.clear();
        unsigned char container[30] = {};
        unsigned char text[32];
        ulong32 packed_size = 30;
        ulong32 size = 77;
        EXPECT_EQ(c.packed, CompressMemory2(kText.data(), 31, container, &packed_size, &callback));
        EXPECT_EQ(c.packed_size, packed_size);
        EXPECT_EQ(c.unpacked, DecompressMemory2(container, text, &size, &callback));
        EXPECT_EQ(c.size, size);
        EXPECT_EQ(c.calls, Callback::calls);
    }
}

TEST(CompressMemory2, CompressesByItselfWithoutACallback) {
    unsigned char container[30];
    ulong32 size = 30;
    EXPECT_EQ(1, CompressMemory2(kText.data(), 31, container, &size, nullptr));
    EXPECT_EQ(ToHex(kContainer.data(), 30), ToHex(container, 30));
    container[16] = 9;
    EXPECT_EQ(0, DecompressMemory2(container, container, &size, nullptr));
}

// Callers compiled long ago rely on the order of the table.
TEST(AbstractCallbackCompress, KeepsItsSlots) {
#ifdef _MSC_VER
    constexpr int kFirst = 1;
#else
    constexpr int kFirst = 2;  // this ABI gives the virtual destructor two slots
#endif
    using ChooseMethod = unsigned char (*)(CAbstractCallbackCompress*);
    using Compress = int (*)(CAbstractCallbackCompress*, const void*, ulong32, void*, ulong32*);
    using Decompress = int (*)(CAbstractCallbackCompress*, const void*, void*, ulong32*);
    Callback callback(9);
    Callback::calls.clear();
    void** const table = *reinterpret_cast<void***>(&callback);
    unsigned char bytes[30];
    ulong32 size = 30;
    EXPECT_EQ(9, reinterpret_cast<ChooseMethod>(table[kFirst])(&callback));
    EXPECT_EQ(-17, reinterpret_cast<Compress>(table[kFirst + 1])(&callback, kText.data(), 31, bytes,
                                                                 &size));
    EXPECT_EQ(-18, reinterpret_cast<Decompress>(table[kFirst + 2])(&callback, bytes, bytes, &size));
    EXPECT_EQ("mcd", Callback::calls);
}

TEST(AbstractCallbackCompress, IsDeletedThroughItsBase) {
    Callback::calls.clear();
    delete static_cast<CAbstractCallbackCompress*>(new Callback(1));
    EXPECT_EQ("D", Callback::calls);
}

}  // namespace
