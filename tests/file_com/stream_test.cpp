#include "file_com/stream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

static_assert(std::is_abstract_v<CQELIOStream>);
static_assert(std::is_move_constructible_v<CQELFileStream> &&
              std::is_move_assignable_v<CQELMemStream>);

// What a component does that is handed a stream and knows nothing more.
void Send(CQELOStream& out, const std::string& text) {
    std::string bytes = text;
    out.Write(bytes.data(), static_cast<int>(bytes.size()));
}
std::string Receive(CQELIStream& in, int n) {
    std::string bytes(static_cast<std::size_t>(n), '.');
    in.Read(bytes.data(), n);
    return bytes;
}

TEST(MemStream, ReadingAndWritingMoveOneCursor) {
    GuardedBuffer memory("0123456789");
    CQELMemStream stream(memory.data());
    Send(stream, "abcd");
    EXPECT_EQ("4567", Receive(stream, 4));
    Send(stream, "XY");
    EXPECT_STREQ("abcd4567XY", memory.text());
}

TEST(MemStream, CopiesGoOnFromTheSamePlaceEachOnItsOwn) {
    char memory[] = "0123456789";
    CQELMemStream first(memory);
    EXPECT_EQ("01", Receive(first, 2));
    CQELMemStream second(first);
    EXPECT_EQ("23", Receive(first, 2));
    EXPECT_EQ("234", Receive(second, 3));
    first = second;
    EXPECT_EQ("56", Receive(first, 2));
    CQELMemStream third(std::move(first));
    EXPECT_EQ("7", Receive(third, 1));
}

TEST(MemStream, TransfersNothingWithoutCountCursorOrBuffer) {
    char memory[] = "0123";
    CQELMemStream stream(memory);
    char byte = 'x';
    for (const int n : {0, -1, -2147483647 - 1}) {
        stream.Read(&byte, n);
        stream.Write(&byte, n);
    }
    stream.Read(nullptr, 2);
    stream.Write(nullptr, 2);
    EXPECT_EQ('x', byte);
    EXPECT_EQ("0123", Receive(stream, 4));
    CQELMemStream none;
    EXPECT_EQ("..", Receive(none, 2));
    Send(none, "ab");
}

TEST(FileStream, SharesTheFileThatItWasMadeOf) {
    const TempFolder folder;
    CQELFile file((folder / "file").c_str(), "w+b", true);
    CQELFileStream stream(file);
    Send(stream, "hello");
    EXPECT_EQ(5u, file.CurPos());
    file.Seek(1, SEEK_SET);
    EXPECT_EQ("ell", Receive(stream, 3));
    CQELFileStream copy(stream);
    EXPECT_EQ("o..", Receive(copy, 3)) << "the end of the file is no failure";
    char byte = 'x';
    stream.Write(&byte, -1);
    stream.Read(&byte, -1);
    EXPECT_EQ(5u, file.CurPos());
}

TEST(FileStream, ThrowsWhenItsFileRaises) {
    const TempFolder folder;
    const std::string path = folder.Write("file", "abc");
    CQELFileStream raising(CQELFile(path.c_str(), "rb", true));
    try {
        Send(raising, "x");
        FAIL() << "not thrown";
    } catch (const XQELFile& failure) {
        EXPECT_EQ(6, failure.Status());
    }
    CQELFileStream recording(CQELFile(path.c_str(), "rb", false));
    EXPECT_NO_THROW(Send(recording, "x"));
    CQELFileStream none;
    EXPECT_NO_THROW(Send(none, "x"));
    EXPECT_EQ("..", Receive(none, 2));
}

TEST(Streams, AnyStreamIsDestroyedThroughItsBase) {
    const TempFolder folder;
    CQELFile file((folder / "file").c_str(), "wb", true);
    CQELStream* const stream = new CQELFileStream(file);
    Send(dynamic_cast<CQELOStream&>(*stream), "abc");
    file.Close();
    EXPECT_EQ(0u, folder.Read("file").size()) << "the stream still has it open";
    delete stream;
    EXPECT_EQ("abc", folder.Read("file"));
}

}  // namespace
