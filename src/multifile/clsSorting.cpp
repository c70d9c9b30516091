#include "multifile/clsSorting.h"

#include "scanner/letter_case.h"

#include <utility>

namespace pluvo::multifile {

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
    for (const std::u16string& path : data_) keys.push_back(scanner::upperCase(path));
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
