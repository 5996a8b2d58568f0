#include "config/option_blob.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "base/byte_order.h"

static_assert(sizeof(CQelOpt) == 32, "the fields are part of the binary interface");
static_assert(sizeof(CQelOpts) == 48, "the fields are part of the binary interface");
static_assert(sizeof(CDrvOptsIp) == 56, "the fields are part of the binary interface");
static_assert(std::endian::native == std::endian::little, "record headers are read by words");

namespace {

constexpr std::size_t kRecordHeader = 8;  // code, length

// A copy of the bytes for std::free; null when it cannot be made.
unsigned char* CopyOf(const unsigned char* data, std::size_t size) {
    if (!data) return nullptr;
    auto* copy = static_cast<unsigned char*>(std::malloc(size));
    if (copy) std::memcpy(copy, data, size);
    return copy;
}

}  // namespace

CQelOpt::CQelOpt() : next_(nullptr), previous_(nullptr), code_(0), length_(0), data_(nullptr) {}

CQelOpt::CQelOpt(unsigned int code, unsigned int length, const unsigned char* data) : CQelOpt() {
    Set(code, length, data);
}

CQelOpt::~CQelOpt() { std::free(data_); }

void CQelOpt::Set(unsigned int code, unsigned int length, const unsigned char* data) {
    unsigned char* copy = length > 0 ? CopyOf(data, length) : nullptr;
    std::free(data_);  // after the copy, which may have been made from it
    data_ = copy;
    const bool complete = copy || length == 0;
    code_ = complete ? code : 0;
    length_ = complete ? length : 0;
}

void CQelOpt::Get(unsigned int& code, unsigned int& length, unsigned char*& data) {
    code = code_;
    length = length_;
    data = data_;
}

// Options are never removed one by one. So they stand, each with its data behind it, in blocks that
// are released together; an option in a list does not own its data. The unused fields of the list's
// head hold the newest block (data) and the length of the blob (code: high half, length: low half).
struct CQelOpts::Store {
    struct Block {
        Block* previous;
        unsigned char* free;
        unsigned char* end;
        void* unused;  // keeps what follows aligned as malloc would
    };

    static Block* Newest(const CQelOpts& list) {
        return reinterpret_cast<Block*>(list.head_.data_);
    }

    static std::uint64_t BlobLength(const CQelOpts& list) {
        return std::uint64_t{list.head_.code_} << 32 | list.head_.length_;
    }

    static void SetBlobLength(CQelOpts& list, std::uint64_t length) {
        list.head_.code_ = static_cast<std::uint32_t>(length >> 32);
        list.head_.length_ = static_cast<std::uint32_t>(length);
    }

    // Makes the list empty and gives up its blocks, which Release takes.
    static Block* Detach(CQelOpts& list) {
        Block* blocks = Newest(list);
        list.head_.data_ = nullptr;
        list.head_.next_ = list.head_.previous_ = &list.head_;
        list.cursor_ = nullptr;
        SetBlobLength(list, 0);
        return blocks;
    }

    static void Release(Block* blocks) {
        while (blocks) {
            Block* previous = blocks->previous;
            std::free(blocks);
            blocks = previous;
        }
    }

    class Appender;
    static void Parse(CQelOpts& list, const unsigned char* blob, unsigned int length);
};

// Appends options to a list; only the destructor closes the list again.
class CQelOpts::Store::Appender {
public:
    explicit Appender(CQelOpts& list)
        : list_(list), last_(list.head_.previous_), length_(BlobLength(list)) {
        Use(Newest(list));
    }
    ~Appender() {
        last_->next_ = &list_.head_;
        list_.head_.previous_ = last_;
        SetBlobLength(list_, length_);
        Leave();
    }
    Appender(const Appender&) = delete;
    Appender& operator=(const Appender&) = delete;

    // `ahead` is the room that will be wanted after this option.
    void Append(std::uint32_t code, std::uint32_t length, const unsigned char* data,
                std::size_t ahead) {
        void* place = Take(sizeof(CQelOpt) + std::size_t{length}, ahead);
        if (!place) {
            code = length = 0;
            place = Take(sizeof(CQelOpt), 0);
        }
        if (!place) return;
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.PlacementNew): it takes the block for empty.
        auto* option = new (place) CQelOpt;
        option->code_ = code;
        option->length_ = length;
        if (length > 0) {
            option->data_ = reinterpret_cast<unsigned char*>(option + 1);
            std::memcpy(option->data_, data, length);
        }
        option->previous_ = last_;
        last_->next_ = option;
        last_ = option;
        length_ += kRecordHeader + length;
    }

private:
    static constexpr std::size_t kAlignment = 16;
    static_assert(sizeof(Block) % kAlignment == 0 && sizeof(CQelOpt) % kAlignment == 0);

    void* Take(std::size_t size, std::size_t ahead) {
        size = (size + kAlignment - 1) / kAlignment * kAlignment;
        if (size > static_cast<std::size_t>(end_ - free_) && !AddBlock(size + ahead) &&
            !AddBlock(size)) {
            return nullptr;
        }
        void* taken = free_;
        free_ += size;
        return taken;
    }

    bool AddBlock(std::size_t room) {
        auto* block = static_cast<Block*>(std::malloc(sizeof(Block) + room));
        if (!block) return false;
        auto* free = reinterpret_cast<unsigned char*>(block + 1);
        *block = {Newest(list_), free, free + room, nullptr};
        Leave();
        list_.head_.data_ = reinterpret_cast<unsigned char*>(block);
        Use(block);
        return true;
    }

    void Use(const Block* block) {
        free_ = block ? block->free : nullptr;
        end_ = block ? block->end : nullptr;
    }
    void Leave() {
        if (Block* block = Newest(list_)) block->free = free_;
    }

    CQelOpts& list_;
    CQelOpt* last_;
    std::uint64_t length_;
    unsigned char* free_;
    unsigned char* end_;
};

void CQelOpts::Store::Parse(CQelOpts& list, const unsigned char* blob, unsigned int length) {
    kit::ByteReader reader(blob, blob ? length : 0);
    Appender appender(list);
    while (reader.left() >= kRecordHeader) {
        std::uint64_t header;  // in one piece: the length is what everything waits for
        std::memcpy(&header, reader.Take(kRecordHeader), kRecordHeader);
        const auto code = static_cast<std::uint32_t>(header);
        const auto size = static_cast<std::uint32_t>(header >> 32);
        const unsigned char* data = reader.Take(size);
        if (!data) return;
        // Enough for the rest when its options have 48 bytes of data or more.
        appender.Append(code, size, data, reader.left() + reader.left() / 2);
    }
}

CQelOpts::CQelOpts() : blob_(nullptr) { Store::Detach(*this); }

CQelOpts::CQelOpts(const unsigned char* blob, unsigned int length) : CQelOpts() {
    Store::Parse(*this, blob, length);
}

CQelOpts::~CQelOpts() {
    Store::Release(Store::Detach(*this));
    std::free(blob_);
}

int CQelOpts::AddOption(unsigned int code, unsigned int length, const unsigned char* data) {
    if (!data && length > 0) return 0;
    constexpr std::uint64_t kLeast = 256, kMost = 1 << 20;
    const std::uint64_t ahead = std::clamp(Store::BlobLength(*this), kLeast, kMost);
    Store::Appender(*this).Append(code, length, data, ahead);
    return 0;
}

bool CQelOpts::GetByCode(unsigned int code, unsigned int& length, unsigned char*& data) {
    for (CQelOpt* option = head_.next_; option != &head_; option = option->next_) {
        if (option->code_ != code) continue;
        option->Get(code, length, data);
        return true;
    }
    return false;
}

unsigned int CQelOpts::GetLength() {
    const std::uint64_t length = Store::BlobLength(*this);
    return length <= UINT32_MAX ? static_cast<unsigned int>(length) : 0;
}

void CQelOpts::GetAllOptions(unsigned int& length, unsigned char*& blob) {
    std::free(blob_);
    const unsigned int size = GetLength();
    blob_ = size > 0 ? static_cast<unsigned char*>(std::malloc(size)) : nullptr;
    blob = blob_;
    length = blob_ ? size : 0;
    if (!blob_) return;
    kit::ByteWriter writer(blob_, size);
    const CQelOpt* option = head_.next_;  // there is one: the blob has a length
    do {
        writer.U32(option->code_);
        writer.U32(option->length_);
        writer.Bytes(option->data_, option->length_);
        option = option->next_;
    } while (option != &head_);
}

int CQelOpts::SeekAt(int index) {
    if (head_.next_ == &head_) {
        cursor_ = nullptr;
        return -1;
    }
    cursor_ = head_.next_;
    for (int reached = 0; reached < index; ++reached) {
        if (cursor_->next_ == &head_) return reached;
        cursor_ = cursor_->next_;
    }
    return index;
}

void CQelOpts::GetOption(unsigned int& code, unsigned int& length, unsigned char*& data) {
    if (!cursor_) {
        code = length = 0;
        data = nullptr;
        return;
    }
    cursor_->Get(code, length, data);
    cursor_ = cursor_->next_ != &head_ ? cursor_->next_ : nullptr;
}

CDrvOptsIp::CDrvOptsIp() = default;

CDrvOptsIp::CDrvOptsIp(const unsigned char* blob, unsigned int length) : CQelOpts(blob, length) {}

CDrvOptsIp::CDrvOptsIp(const CDrvOptsIp& other) : CQelOpts() { *this = other; }

CDrvOptsIp& CDrvOptsIp::operator=(const CDrvOptsIp& other) {
    unsigned int length;
    unsigned char* blob;
    // Quirk: copying replaces the blob of an object that is const here. Callers see it in the
    // pointer that they got from it. Pinned by DrvOptsIp.CopiesThroughTheBlobOfTheOther.
    const_cast<CDrvOptsIp&>(other).GetAllOptions(length, blob);
    Create(blob, length);
    return *this;
}

CDrvOptsIp::~CDrvOptsIp() { FreeObject(); }

// What is replaced is released last, because the new blob may lie in it.
void CDrvOptsIp::Create(const unsigned char* blob, unsigned int length) {
    unsigned char* const old_blob = blob_;
    blob_ = nullptr;
    Store::Block* const old_blocks = Store::Detach(*this);
    Store::Parse(*this, blob, length);
    Store::Release(old_blocks);
    std::free(old_blob);
}

void CDrvOptsIp::Clean() { FreeObject(); }

void CDrvOptsIp::FreeObject() {
    Store::Release(Store::Detach(*this));
    std::free(blob_);
    blob_ = nullptr;
}
