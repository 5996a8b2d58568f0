#include "compress/compress_memory.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

#include "support/formats_page.h"
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

// By length, room and method.
TEST(CompressMemory, FailsWithoutRoomOrGainOrMethod) {
    const std::tuple<ulong32, ulong32, int> cases[] = {
        {31, 23, 1}, {31, 0, 1},  {31, 23, 2}, {31, 29, 1}, {30, 60, 1},
        {0, 60, 1},  {31, 31, 2}, {31, 60, 0}, {31, 60, 3}, {31, 60, 255},
    };
    for (const auto& [length, room, method] : cases) {
        SCOPED_TRACE(testing::Message() << length << " into " << room << " by " << method);
        GuardedBuffer container(room);
        std::memset(container.data(), 0xCC, room);
        ulong32 size = room;
        EXPECT_EQ(0, CompressMemory(kText.data(), length, container.data(), &size,
                                    static_cast<unsigned char>(method)));
        EXPECT_EQ(room, size);
        EXPECT_TRUE(room == 0 || container.data()[0] == 0xCC) << "a header all the same";
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
    size = 24;  // an empty payload
    EXPECT_EQ(1, CompressMemory(nullptr, 31, container.data(), &size, 2));
    EXPECT_EQ(0, DecompressMemory(container.data(), container.data(), &size));
    EXPECT_EQ(0, DecompressMemory2(container.data(), container.data(), &size, nullptr));
}

TEST(IsMemoryCompressed, WantsOneHeaderWhoseSizesMakeUpTheLength) {
    std::string longer = With(20, 25);  // fine when the sizes still add up
    longer[12] = 5;
    std::string shorter = With(20, 23);
    shorter[12] = 7;
    std::string wrapped = With(20, 0xF0);  // 0xFFFFFFF0 + 0x2E is 30 in 32 bits only
    wrapped.replace(21, 3, "\xFF\xFF\xFF");
    wrapped[12] = 0x2E;
    const std::pair<std::string, int> cases[] = {
        {kContainer, 1},       {longer, 1},       {shorter, 0},      {wrapped, 0},
        {kContainer + "x", 0}, {With(8, 77), 1},  {With(16, 77), 1}, {With(17, 77), 1},
        {With(3, 0xFE), 0},    {With(7, 'p'), 0}, {With(12, 7), 0},  {With(12, 5), 0},
    };
    for (const auto& [bytes, expected] : cases) {
        GuardedBuffer data(bytes.data(), bytes.size());
        EXPECT_EQ(expected, IsMemoryCompressed(data.data(), static_cast<ulong32>(data.size())))
            << ToHex(bytes.data(), bytes.size());
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

    const std::string lying = With(8, 30);  // a byte too few
    container = lying;
    GuardedBuffer spare(31);
    EXPECT_EQ(0, DecompressMemory(container.data(), spare.data(), &size));
    EXPECT_EQ(31u, size);
    EXPECT_EQ(lying, container);
    EXPECT_EQ(kText, std::string(spare.text(), 31));
}

// Records its calls; returns values that the library would never make up.
class Callback : public CAbstractCallbackCompress {
public:
    explicit Callback(unsigned char method) : method_(method) {}
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

    std::string calls;

private:
    unsigned char method_;
};

TEST(DecompressMemory, FailsOnNullPointersAsCompressMemoryDoes) {
    unsigned char bytes[64] = {};
    ulong32 size = sizeof bytes;
    EXPECT_EQ(0, CompressMemory(nullptr, 31, bytes, &size, 1));
    EXPECT_EQ(0, CompressMemory(bytes, 31, nullptr, &size, 1));
    EXPECT_EQ(0, CompressMemory2(bytes, 31, bytes, nullptr, nullptr));
    EXPECT_EQ(0, DecompressMemory2(nullptr, bytes, &size, nullptr));
    EXPECT_EQ(0, DecompressMemory(nullptr, bytes, &size));
    EXPECT_EQ(0, DecompressMemory(kContainer.data(), nullptr, &size));
    EXPECT_EQ(0, DecompressMemory(kContainer.data(), bytes, nullptr));
    EXPECT_EQ(sizeof bytes, size);
}

TEST(CompressMemory2, AsksTheCallbackForItsMethod) {
    // By method: what packing and unpacking give, and the calls.
    const std::tuple<int, int, ulong32, int, ulong32, const char*> cases[] = {
        {1, 1, 30, 1, 31, "m"},
        {2, 1, 30, 0, 77, "m"},
        {0, -17, 55, -18, 66, "mcd"},
        {255, -17, 55, -18, 66, "mcd"},
    };
    unsigned char container[30] = {};
    unsigned char text[32];
    ulong32 size = 30;
    for (const auto& [method, packed, packed_size, unpacked, text_size, calls] : cases) {
        SCOPED_TRACE(method);
        Callback callback(static_cast<unsigned char>(method));
        size = 30;
        EXPECT_EQ(packed, CompressMemory2(kText.data(), 31, container, &size, &callback));
        EXPECT_EQ(packed_size, size);
        size = 77;
        EXPECT_EQ(unpacked, DecompressMemory2(container, text, &size, &callback));
        EXPECT_EQ(text_size, size);
        EXPECT_EQ(calls, callback.calls);
    }
    size = 30;  // and without a callback
    EXPECT_EQ(1, CompressMemory2(kText.data(), 31, container, &size, nullptr));
    EXPECT_EQ(ToHex(kContainer.data(), 30), ToHex(container, 30));
    container[16] = 9;
    EXPECT_EQ(0, DecompressMemory2(container, text, &size, nullptr));
}

// The dump in docs/formats.md is what the library writes.
TEST(FormatsPage, ShowsTheContainerAsItIsWritten) {
    const std::string text = Fenced("sample=container"), dump = DumpedBytes("dump=container");
    ASSERT_EQ(54u, text.size());
    unsigned char container[60];
    ulong32 size = sizeof container;
    ASSERT_EQ(1, CompressMemory(text.data(), 54, container, &size, 1));
    EXPECT_EQ(ToHex(dump.data(), 43), ToHex(container, size));
}

}  // namespace
