#include "net/std_list_safe.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "base/byte_order.h"
#include "net/detail/exact_set.h"

namespace kit {
namespace {

template <typename T>
constexpr unsigned int kElementSize = sizeof(T);
static_assert(kElementSize<ulong32> == 4 && kElementSize<CQELRangeIP> == 8);

void ReadElement(const unsigned char* from, ulong32& address) { address = LoadLe32(from); }
void ReadElement(const unsigned char* from, CQELRangeIP& range) {
    range = CQELRangeIP(LoadLe32(from), LoadLe32(from + 4));
}

void WriteElement(unsigned char* to, ulong32 address) { StoreLe32(to, address); }
void WriteElement(unsigned char* to, const CQELRangeIP& range) {
    StoreLe32(to, range.from);
    StoreLe32(to + 4, range.to);
}

// The size of the flat form, which counts in 32 bits.
unsigned int FlatSize(std::size_t count, unsigned int element_size) {
    if (count > (std::numeric_limits<unsigned int>::max)() / element_size) {
        throw std::length_error("list<T> too long");
    }
    return static_cast<unsigned int>(count * element_size);
}

}  // namespace
}  // namespace kit

template <typename T>
StdListSafe<T>::StdListSafe(const StdListSafe& other) : std::list<T>(other) {}

template <typename T>
StdListSafe<T>::StdListSafe(StdListSafe&& other) noexcept = default;

template <typename T>
StdListSafe<T>::~StdListSafe() = default;

template <typename T>
StdListSafe<T>& StdListSafe<T>::operator=(const StdListSafe& other) {
    std::list<T>::operator=(other);
    return *this;
}

template <typename T>
StdListSafe<T>& StdListSafe<T>::operator=(StdListSafe&& other) noexcept = default;

template <typename T>
void StdListSafe<T>::Load(const unsigned char* data, unsigned int length) {
    std::list<T> loaded;
    for (; data && length >= kit::kElementSize<T>; length -= kit::kElementSize<T>) {
        kit::ReadElement(data, loaded.emplace_back());
        data += kit::kElementSize<T>;
    }
    this->swap(loaded);
}

template <typename T>
void StdListSafe<T>::Save(unsigned int& length, unsigned char*& data) {
    const unsigned int size = kit::FlatSize(this->size(), kit::kElementSize<T>);
    std::unique_ptr<unsigned char[]> buffer(size > 0 ? new unsigned char[size] : nullptr);
    unsigned char* to = buffer.get();
    for (const T& element : *this) {
        kit::WriteElement(to, element);
        to += kit::kElementSize<T>;
    }
    saved_ = std::move(buffer);
    length = size;
    if (saved_) data = saved_.get();
}

template <typename T>
int StdListSafe<T>::Sizeof() const {
    return static_cast<int>(kit::kElementSize<T>);
}

template <typename T>
void StdListSafe<T>::RemoveList(const StdListSafe& b) {
    kit::RemoveEqual<T>(*this, b);
}

template class QELKIT_LIST_INSTANCE StdListSafe<ulong32>;
template class QELKIT_LIST_INSTANCE StdListSafe<CQELRangeIP>;
