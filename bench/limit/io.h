#pragma once

#include <string>
#include <string_view>

/// The bare system calls of the limit program.
namespace limit {

/// A file mapped whole, for reading.
class Mapped {
 public:
  explicit Mapped(const std::string& path);
  ~Mapped();
  Mapped(const Mapped&) = delete;
  Mapped& operator=(const Mapped&) = delete;
  std::string_view bytes() const { return bytes_; }

 private:
  std::string_view bytes_;
};

/// A new file beside its final place, flushed and renamed there, its folder flushed too if asked.
class Written {
 public:
  explicit Written(std::string path);
  ~Written();
  Written(const Written&) = delete;
  Written& operator=(const Written&) = delete;
  void write(std::string_view bytes);
  void flush(bool folderToo = true);

 private:
  std::string path_;
  std::string temporary_;
  int file_ = -1;
};

}  // namespace limit
