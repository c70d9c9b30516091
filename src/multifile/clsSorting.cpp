#include "multifile/clsSorting.h"

#include "text/folding.h"

#include <string_view>
#include <utility>

namespace pluvo::multifile {

namespace {

/// As it is ordered: capitals of ASCII, so that a backslash comes after letters and before underscores.
std::u16string keyOf(std::u16string_view path) {
  std::u16string key = text::foldCase(path);
  for (char16_t& unit : key) {
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - u'a' + u'A');
  }
  return key;
}

}  // namespace

void clsSorting::Data(std::vector<std::u16string> data) {
  data_ = std::move(data);
  sorted_ = false;
}

void clsSorting::SortData() {
  if (sortType_ == 0) ExchangeSort();
  sorted_ = true;
}

void clsSorting::ExchangeSort() {
  errors::guarded(context_, u"csort:07", [&] {
    std::vector<std::u16string> keys;
    keys.reserve(data_.size());
    for (const std::u16string& path : data_) keys.push_back(keyOf(path));
    for (std::size_t i = 0; i < data_.size(); ++i) {
      for (std::size_t j = i + 1; j < data_.size(); ++j) {
        if (keys[i] <= keys[j]) continue;
        std::swap(keys[i], keys[j]);
        std::swap(data_[i], data_[j]);
      }
    }
  });
}

}  // namespace pluvo::multifile
