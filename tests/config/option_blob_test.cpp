#include "config/option_blob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/formats_page.h"
#include "support/guarded_buffer.h"
#include "support/header_bytes.h"

namespace {

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
unsigned int Size(const std::string& text) { return static_cast<unsigned int>(text.size()); }

struct Option {
    unsigned int code = 99, length = 99;
    unsigned char* data = nullptr;

    std::string Shown() const {
        if (!data) return std::to_string(code) + ":" + std::to_string(length) + "-";
        return std::to_string(code) + ":" + std::string(reinterpret_cast<char*>(data), length);
    }
};

Option Next(CQelOpts& options) {
    Option option;
    options.GetOption(option.code, option.length, option.data);
    return option;
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

const std::string kThree =
    FromHex("01000000 02000000 6161  07000000 00000000  01000000 01000000 62");

// The same operations on a plain list.
struct Model {
    struct Record {
        unsigned int code;
        std::string data;
        std::string Shown() const {
            return std::to_string(code) + ":" + (data.empty() ? "0-" : data);
        }
    };
    std::vector<Record> records;
    int cursor = -1;

    int Last() const { return static_cast<int>(records.size()) - 1; }
    int SeekAt(int index) {
        cursor = records.empty() ? -1 : std::clamp(index, 0, Last());
        return records.empty() ? -1 : (std::min)(index, Last());
    }
    std::string Next() {
        if (cursor < 0) return "0:0-";
        const int shown = cursor;
        cursor = cursor < Last() ? cursor + 1 : -1;
        return records[static_cast<std::size_t>(shown)].Shown();
    }
    std::string ByCode(unsigned int code) const {
        for (const auto& record : records) {
            if (record.code == code) return record.Shown();
        }
        return "99:99-";
    }
    std::string Blob() const {
        std::string blob;
        for (const auto& [code, data] : records) blob += Numbers({code, Size(data)}) + data;
        return blob;
    }
};

}  // namespace

TEST(OptionBlob, IsAListWithACursor) {
    std::mt19937 random(20240101);
    const auto below = [&](int end) { return static_cast<int>(random() % unsigned(end)); };
    CDrvOptsIp options;
    Model model;
    for (int step = 0; step < 30000; ++step) {
        SCOPED_TRACE(step);
        const auto code = static_cast<unsigned int>(below(2000));
        const int index = below(9) == 0 ? INT_MAX : below(model.Last() + 5) - 2;
        const std::string data(static_cast<std::size_t>(below(333)), static_cast<char>(step));
        Option found;
        switch (below(6)) {
            case 0:
                Add(options, code, data);
                model.records.push_back({code, data});
                break;
            case 1:
                ASSERT_EQ(model.SeekAt(index), options.SeekAt(index)) << index;
                break;
            case 2:
                if (options.GetByCode(code, found.length, found.data)) found.code = code;
                ASSERT_EQ(model.ByCode(code), found.Shown());
                break;
            default:
                found = Next(options);
                ASSERT_EQ(model.Next(), found.Shown());
        }
        ASSERT_EQ(0u, reinterpret_cast<std::uintptr_t>(found.data) % 16);  // for any type
        if (step % 1000 != 0) continue;
        const std::string built = Built(options);
        ASSERT_EQ(model.Blob(), built);
        options.Create(Bytes(built), Size(built));
        model.cursor = -1;
        if (step % 7000 == 0) options.Clean(), model = {};
    }
}

TEST(OptionBlob, SetsAnOptionFromAnyBytesAndItsOwn) {
    CQelOpt option;
    Option got;
    const struct {
        unsigned int code, length;
        const char* data;
        const char* after;
    } cases[] = {{5, 6, "abcdef", "5:abcdef"}, {6, 1, "x", "6:x"},   {7, 0, "abc", "7:0-"},
                 {8, 0, nullptr, "8:0-"},      {9, 2, "pq", "9:pq"}, {10, 4, nullptr, "0:0-"},
                 {1, 6, "abcdef", "1:abcdef"}};
    for (const auto& c : cases) {
        option.Set(c.code, c.length, reinterpret_cast<const unsigned char*>(c.data));
        option.Get(got.code, got.length, got.data);
        EXPECT_EQ(c.after, got.Shown());
    }
    option.Set(2, 3, got.data + 2);
    option.Get(got.code, got.length, got.data);
    EXPECT_EQ("2:cde", got.Shown());
}

TEST(OptionBlob, ReadsRecordsUntilOneIsCutShort) {
    struct Case {
        std::string blob;
        std::size_t read;  // bytes, which are those that are built again
    };
    std::vector<Case> cases = {
        {FromHex("FFFFFFFF 01000000 78"), 9},
        {FromHex("01000000 02000000 6161 01000000 FFFFFFFF 62"), 10},
        {FromHex("01000000 02000000 6161 01000000 F8FFFFFF 62"), 10},
        {FromHex("01000000 02000000 6161 01000000 F7FFFFFF 62"), 10},
        {FromHex("01000000 00000080 6161"), 0},
        {FromHex("01000000 00000000 02000000 000000"), 8},
    };
    for (std::size_t cut = 0; cut <= kThree.size(); ++cut) {
        const std::size_t whole = cut < 10 ? 0 : cut < 18 ? 10 : cut < 27 ? 18 : 27;
        cases.push_back({kThree.substr(0, cut), whole});
    }
    for (const auto& c : cases) {
        GuardedBuffer guarded(c.blob.data(), c.blob.size());
        CQelOpts options(guarded.data(), Size(c.blob));
        EXPECT_EQ(c.blob.substr(0, c.read), Built(options)) << ToHex(c.blob.data(), c.blob.size());
    }
    EXPECT_EQ(0u, CQelOpts(nullptr, 100).GetLength());
}

TEST(OptionBlob, TakesDataFromItsOwnOptionsAndBlob) {
    CDrvOptsIp options(Bytes(kThree), Size(kThree));
    Option found;
    options.GetByCode(1, found.length, found.data);
    EXPECT_EQ(0, options.AddOption(20, found.length, found.data));
    EXPECT_EQ(0, options.AddOption(5, 4, nullptr));  // adds nothing
    found.data[1] = 'z';                             // the option's own bytes
    EXPECT_EQ("az", Built(options).substr(8, 2));

    unsigned int length;
    unsigned char* blob;
    options.GetAllOptions(length, blob);
    options.Create(blob + 10, length - 10);
    EXPECT_EQ(kThree.substr(10) + FromHex("14000000 02000000 6161"), Built(options));
    Add(options, 30, kThree);
    ASSERT_TRUE(options.GetByCode(30, found.length, found.data));
    options.Create(found.data, found.length);
    EXPECT_EQ(kThree, Built(options));
    CDrvOptsIp& same = options;
    options.SeekAt(1);
    options = same;
    EXPECT_EQ("0:0-", Next(options).Shown());  // no cursor
    EXPECT_EQ(kThree, Built(options));
}

TEST(DrvOptsIp, CopiesThroughTheBlobOfTheOther) {
    CDrvOptsIp original(Bytes(kThree), Size(kThree));
    const auto blob_of = [](const CQelOpts& options) {
        return reinterpret_cast<const unsigned char* const*>(&options)[5];
    };
    EXPECT_EQ(nullptr, blob_of(original));
    CDrvOptsIp copy(std::as_const(original));
    EXPECT_NE(nullptr, blob_of(original));  // the blob that was made for it
    Add(original, 2, "two");
    EXPECT_EQ(kThree, Built(copy));
    copy = std::as_const(original);
    EXPECT_EQ(Built(original), Built(copy));
    copy = CDrvOptsIp();
    EXPECT_EQ(0u, copy.GetLength());
}

TEST(FormatsPage, ShowsAnOptionBlobAsItIsBuilt) {
    CQelOpts options;
    Add(options, 6, FromHex("C0A80001"));
    Add(options, 0x10C, "gate");
    Add(options, 6, FromHex("C0A80002"));
    Add(options, 0xFF, "");
    EXPECT_EQ(DumpedBytes("dump=options"), Built(options));
}
