#include "config/option_blob.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
unsigned int Size(const std::string& text) { return static_cast<unsigned int>(text.size()); }

struct Option {
    unsigned int code = 0xDEADBEEF, length = 0xDEADBEEF;
    unsigned char* data = nullptr;
    std::string Text() const { return std::string(reinterpret_cast<const char*>(data), length); }
};

Option Next(CQelOpts& options) {
    Option option;
    options.GetOption(option.code, option.length, option.data);
    return option;
}

// "code:data code:data ...", from the list as the cursor walks it.
std::string Listed(CQelOpts& options) {
    std::string list;
    const int last = options.SeekAt(INT_MAX);
    options.SeekAt(0);
    for (int i = 0; i <= last; ++i) {
        const Option option = Next(options);
        list += std::to_string(option.code) + ":" + (option.data ? option.Text() : "-") + " ";
    }
    return list;
}

std::string Built(CQelOpts& options) {
    unsigned int length;
    unsigned char* blob;
    options.GetAllOptions(length, blob);
    EXPECT_EQ(length, options.GetLength());
    return std::string(reinterpret_cast<const char*>(blob), length);
}

void Add(CQelOpts& options, unsigned int code, const std::string& data) {
    EXPECT_EQ(0, options.AddOption(code, Size(data), Bytes(data)));
}

template <typename T>
T FieldAt(const void* object, std::size_t offset) {
    T field;
    std::memcpy(&field, static_cast<const char*>(object) + offset, sizeof field);
    return field;
}

const std::string kThree =
    FromHex("01000000 02000000 6161  07000000 00000000  01000000 01000000 62");

}  // namespace

TEST(OptionBlob, KeepsTheLayoutOfItsFields) {
    CQelOpt option(0x1234, 3, Bytes("abc"));
    EXPECT_EQ(32u, sizeof option);
    EXPECT_EQ(0x1234u, FieldAt<unsigned int>(&option, 16));
    EXPECT_EQ(3u, FieldAt<unsigned int>(&option, 20));
    EXPECT_EQ(0, std::memcmp("abc", FieldAt<void*>(&option, 24), 3));

    CDrvOptsIp options(Bytes(kThree), Size(kThree));
    CQelOpts* base = &options;
    EXPECT_EQ(56u, sizeof options);
    EXPECT_EQ(8, reinterpret_cast<char*>(base) - reinterpret_cast<char*>(&options));
    EXPECT_EQ(nullptr, FieldAt<void*>(base, 32));
    EXPECT_EQ(nullptr, FieldAt<void*>(base, 40));
    options.SeekAt(0);
    Built(options);
    auto* first = FieldAt<void*>(base, 0);
    EXPECT_EQ(first, FieldAt<void*>(base, 32));  // the cursor
    EXPECT_EQ(0, std::memcmp(kThree.data(), FieldAt<void*>(base, 40), kThree.size()));
    EXPECT_EQ(base, FieldAt<void*>(first, 8));
    EXPECT_EQ(base, FieldAt<void*>(FieldAt<void*>(base, 8), 0));
    EXPECT_EQ(1u, FieldAt<unsigned int>(first, 16));
}

TEST(OptionBlob, SetsAnOptionFromAnyBytes) {
    CQelOpt option;
    Option got;
    const struct {
        const char* what;
        unsigned int code, length;
        const char* data;
        unsigned int code_after, length_after;
    } cases[] = {
        {"data", 5, 3, "abc", 5, 3},     {"shorter data", 6, 1, "x", 6, 1},
        {"no bytes", 7, 0, "abc", 7, 0}, {"null without bytes", 8, 0, nullptr, 8, 0},
        {"data", 9, 2, "pq", 9, 2},      {"null with a length", 10, 4, nullptr, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        option.Set(c.code, c.length, reinterpret_cast<const unsigned char*>(c.data));
        option.Get(got.code, got.length, got.data);
        EXPECT_EQ(c.code_after, got.code);
        EXPECT_EQ(c.length_after, got.length);
        EXPECT_EQ(c.length_after > 0, got.data != nullptr);
        EXPECT_TRUE(!got.data || got.Text() == c.data);
    }
    option.Set(1, 6, Bytes("abcdef"));
    option.Get(got.code, got.length, got.data);
    option.Set(2, 3, got.data + 2);  // from its own bytes
    option.Get(got.code, got.length, got.data);
    EXPECT_EQ("cde", got.Text());
}

TEST(OptionBlob, ReadsRecordsUntilOneIsCutShort) {
    const struct {
        const char* blob;
        const char* list;
        std::size_t read;  // bytes, which are those that are built again
    } cases[] = {
        {"", "", 0},
        {"07000000 00000000", "7:- ", 8},
        {"FFFFFFFF 01000000 78", "4294967295:x ", 9},
        {"01000000 02000000 6161 01000000 01000000 62", "1:aa 1:b ", 19},
        {"01000000 02000000 6161 01000000 02000000 62", "1:aa ", 10},
        {"01000000 02000000 6161 01000000 FFFFFFFF 62", "1:aa ", 10},
        {"01000000 02000000 6161 01000000 F8FFFFFF 62", "1:aa ", 10},
        {"01000000 02000000 6161 01000000 F7FFFFFF 62", "1:aa ", 10},
        {"01000000 00000080 6161", "", 0},
        {"01000000 00000000 02", "1:- ", 8},
        {"01000000 00000000 02000000 000000", "1:- ", 8},
        {"000000", "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.blob);
        const std::string blob = FromHex(c.blob);
        GuardedBuffer guarded(blob.data(), blob.size());
        CQelOpts options(guarded.data(), Size(blob));
        EXPECT_EQ(c.list, Listed(options));
        EXPECT_EQ(blob.substr(0, c.read), Built(options));
    }
    CQelOpts none(nullptr, 100);
    EXPECT_EQ(0u, none.GetLength());
}

TEST(OptionBlob, KeepsTheWholeRecordsOfABlobCutAnywhere) {
    for (std::size_t cut = 0; cut <= kThree.size(); ++cut) {
        GuardedBuffer guarded(kThree.data(), cut);
        CQelOpts options(guarded.data(), static_cast<unsigned int>(cut));
        const unsigned int whole = cut < 10 ? 0 : cut < 18 ? 10 : cut < 27 ? 18 : 27;
        EXPECT_EQ(whole, options.GetLength()) << cut;
    }
}

TEST(OptionBlob, FindsTheFirstOptionOfACode) {
    CQelOpts options(Bytes(kThree), Size(kThree));
    Option found;
    EXPECT_TRUE(options.GetByCode(1, found.length, found.data));
    EXPECT_EQ("aa", found.Text());
    found.data[1] = 'z';  // the option's own bytes
    EXPECT_EQ("1:az 7:- 1:b ", Listed(options));
    EXPECT_EQ("az", Built(options).substr(8, 2));
    EXPECT_TRUE(options.GetByCode(7, found.length, found.data));
    EXPECT_EQ(0u, found.length);
    EXPECT_EQ(nullptr, found.data);
    unsigned char untouched = 0;
    found.length = 99;
    found.data = &untouched;
    EXPECT_FALSE(options.GetByCode(2, found.length, found.data));
    EXPECT_EQ(99u, found.length);
    EXPECT_EQ(&untouched, found.data);
}

TEST(OptionBlob, SeeksNoFurtherThanTheLastOption) {
    CQelOpts options;
    for (int index : {0, 5, -1}) EXPECT_EQ(-1, options.SeekAt(index)) << index;
    Add(options, 10, "a");
    Add(options, 11, "b");
    Add(options, 12, "c");
    const struct {
        int index, result;
        unsigned int code;
    } cases[] = {{0, 0, 10}, {1, 1, 11},       {2, 2, 12},  {3, 2, 12},
                 {5, 2, 12}, {INT_MAX, 2, 12}, {-4, -4, 10}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.result, options.SeekAt(c.index)) << c.index;
        EXPECT_EQ(c.code, Next(options).code) << c.index;
    }
}

TEST(OptionBlob, WalksToTheLastOptionAndThenHasNoCursor) {
    CQelOpts options(Bytes(kThree), Size(kThree));
    for (const int start : {-1, 1}) {
        if (start >= 0) {
            options.SeekAt(start);
            EXPECT_EQ(7u, Next(options).code);
            EXPECT_EQ("b", Next(options).Text());
            Add(options, 99, "behind");  // the cursor is not behind the last one: there is none
        }
        for (int again = 0; again < 2; ++again) {
            const Option none = Next(options);
            EXPECT_EQ(0u, none.code);
            EXPECT_EQ(0u, none.length);
            EXPECT_EQ(nullptr, none.data);
        }
    }
}

TEST(OptionBlob, AddsBehindTheOthersAndReplacesNothing) {
    CQelOpts options(Bytes(kThree), Size(kThree));
    Add(options, 1, "cc");
    Add(options, 7, "");
    EXPECT_EQ(0, options.AddOption(5, 4, nullptr));
    EXPECT_EQ("1:aa 7:- 1:b 1:cc 7:- ", Listed(options));
    Option found;
    options.GetByCode(1, found.length, found.data);
    EXPECT_EQ(0, options.AddOption(3, found.length, found.data));  // from an option of its own
    EXPECT_EQ(kThree + FromHex("01000000 02000000 6363  07000000 00000000  03000000 02000000 6161"),
              Built(options));
}

// Every length of data up to some hundreds, several times: options in many blocks of memory.
TEST(OptionBlob, KeepsManyOptionsOfAnyLength) {
    CQelOpts options;
    std::string blob;
    std::vector<std::string> all;
    for (int i = 0; i < 3000; ++i) {
        all.emplace_back(static_cast<std::size_t>(i % 333), static_cast<char>('A' + i % 26));
        Add(options, static_cast<unsigned int>(i), all.back());
        const unsigned char header[8] = {
            static_cast<unsigned char>(i),       static_cast<unsigned char>(i >> 8),       0, 0,
            static_cast<unsigned char>(i % 333), static_cast<unsigned char>(i % 333 >> 8), 0, 0};
        blob += std::string(reinterpret_cast<const char*>(header), 8) + all.back();
    }
    EXPECT_EQ(blob, Built(options));
    CQelOpts read(Bytes(blob), Size(blob));
    read.SeekAt(0);
    for (const std::string& data : all) {
        const Option option = Next(read);
        ASSERT_EQ(data, option.data ? option.Text() : "");
        ASSERT_EQ(0u, reinterpret_cast<std::uintptr_t>(option.data) % 16);  // for any type
    }
    EXPECT_EQ(blob, Built(read));
}

// --- CDrvOptsIp ---------------------------------------------------------------------------------

TEST(DrvOptsIp, CopiesThroughTheBlobOfTheOther) {
    CDrvOptsIp original;
    Add(original, 1, "one");
    const CDrvOptsIp& constant = original;
    const CQelOpts* base = &original;
    EXPECT_EQ(nullptr, FieldAt<void*>(base, 40));
    CDrvOptsIp copy(constant);
    EXPECT_NE(nullptr, FieldAt<void*>(base, 40));  // the blob that was made for it
    Add(original, 2, "two");
    EXPECT_EQ("1:one ", Listed(copy));
    copy = constant;
    EXPECT_EQ("1:one 2:two ", Listed(copy));
    EXPECT_EQ("1:one 2:two ", Listed(original));
    copy = CDrvOptsIp();
    EXPECT_EQ("", Listed(copy));
}

TEST(DrvOptsIp, IsAssignedToItself) {
    CDrvOptsIp options(Bytes(kThree), Size(kThree));
    options.SeekAt(1);
    CDrvOptsIp& same = options;
    options = same;
    EXPECT_EQ(nullptr, Next(options).data);  // no cursor
    EXPECT_EQ(kThree, Built(options));
}

TEST(DrvOptsIp, IsLoadedAnewFromAnyBlobEvenItsOwn) {
    CDrvOptsIp options;
    Add(options, 1, "old");
    options.SeekAt(0);
    options.Create(Bytes(kThree), Size(kThree));
    EXPECT_EQ(nullptr, Next(options).data);
    EXPECT_EQ("1:aa 7:- 1:b ", Listed(options));
    unsigned int length;
    unsigned char* blob;
    options.GetAllOptions(length, blob);
    options.Create(blob + 10, length - 10);
    EXPECT_EQ("7:- 1:b ", Listed(options));
    Add(options, 20, kThree);
    Option nested;
    ASSERT_TRUE(options.GetByCode(20, nested.length, nested.data));
    options.Create(nested.data, nested.length);
    EXPECT_EQ(kThree, Built(options));
    options.SeekAt(0);
    options.Clean();
    EXPECT_EQ(0u, options.GetLength());
    EXPECT_EQ(nullptr, Next(options).data);
    Add(options, 3, "new");
    EXPECT_EQ("3:new ", Listed(options));
}

TEST(DrvOptsIp, IsDestroyedThroughItsBase) {
    struct Derived : CDrvOptsIp {
        explicit Derived(bool& gone) : gone_(gone) {}
        ~Derived() override { gone_ = true; }
        bool& gone_;
    };
    bool gone = false;
    CDrvOptsIp* options = new Derived(gone);
    Add(*options, 1, "one");
    delete options;
    EXPECT_TRUE(gone);
}

// --- docs/formats.md ----------------------------------------------------------------------------

TEST(FormatsPage, ShowsAnOptionBlobAsItIsBuilt) {
    std::ifstream file(std::string(QELKIT_TEST_DATA) + "/../../docs/formats.md", std::ios::binary);
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const std::string fence = "```text dump=options\n";
    ASSERT_NE(std::string::npos, page.find(fence));
    std::istringstream lines(page.substr(page.find(fence) + fence.size()));
    std::string hex;
    for (std::string line; std::getline(lines, line) && line != "```";) hex += line.substr(4);

    CQelOpts options;
    Add(options, 6, FromHex("C0A80001"));
    Add(options, 0x10C, "gate");
    Add(options, 6, FromHex("C0A80002"));
    Add(options, 0xFF, "");
    EXPECT_EQ(ToHex(FromHex(hex).data(), FromHex(hex).size()),
              ToHex(Built(options).data(), Built(options).size()));
}
