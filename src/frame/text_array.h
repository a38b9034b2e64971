// An array of strings that the host has dimensioned: the library reads and fills its elements and
// never resizes it.
#ifndef ARD_FRAME_TEXT_ARRAY_H_
#define ARD_FRAME_TEXT_ARRAY_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ard {

class TextArray {
 public:
  // How whoever keeps the elements reads the one in that place, from 0, and puts a text there,
  // which is handed over in two pieces.
  using Reader = std::wstring_view (*)(const void* elements, std::size_t place);
  using Writer = void (*)(void* elements, std::size_t place, std::wstring_view front,
                          std::wstring_view back);

  TextArray() : TextArray(0, {}) {}  // without elements
  TextArray(std::int32_t lower_bound, std::size_t size, void* elements, Reader read, Writer write)
      : lower_bound_(lower_bound), size_(size), elements_(elements), read_(read), write_(write) {}
  TextArray(std::int32_t lower_bound, std::span<std::wstring> texts)
      : TextArray(
            lower_bound, texts.size(), texts.data(),
            [](const void* elements, std::size_t place) {
              return std::wstring_view(static_cast<const std::wstring*>(elements)[place]);
            },
            [](void* elements, std::size_t place, std::wstring_view front, std::wstring_view back) {
              std::wstring& element = static_cast<std::wstring*>(elements)[place];
              element.reserve(front.size() + back.size());  // or nothing is changed
              element.assign(front).append(back);
            }) {}

  std::int64_t lower_bound() const { return lower_bound_; }
  // Below the lower bound when there are no elements.
  std::int64_t upper_bound() const { return lower_bound() + static_cast<std::int64_t>(size_) - 1; }

  // The element with an index within the bounds, until something is put there.
  std::wstring_view Get(std::int64_t index) const { return read_(elements_, Place(index)); }
  void Put(std::int64_t index, std::wstring_view front, std::wstring_view back = {}) const {
    write_(elements_, Place(index), front, back);
  }

 private:
  std::size_t Place(std::int64_t index) const {
    return static_cast<std::size_t>(index - lower_bound_);
  }

  std::int32_t lower_bound_;
  std::size_t size_;
  void* elements_;
  Reader read_;
  Writer write_;
};

}  // namespace ard

#endif  // ARD_FRAME_TEXT_ARRAY_H_
