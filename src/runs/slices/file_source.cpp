#include "base/json_value.h"
#include "runs/outcome_json.h"
#include "runs/slice_keys.h"
#include "slices/source.h"

#include <algorithm>
#include <fstream>

namespace pluvo::runs {
namespace {

using base::JsonValue;

class FileSource final : public SliceReport::Source {
 public:
  FileSource(files::FileSystem& system, const std::string& path) : keys_(system, {}), path_(path) {
    forEachLine([&](const JsonValue& line, std::size_t number) {
      const JsonValue& told = line.has("slice") ? line["slice"] : line["summary"];
      if (!told.isObject()) return;
      const std::string& request = told["request"].text();
      if (request.empty()) return;
      if (!request_.empty() && request != request_)
        throw SlicesRefused(path_ + ", line " + std::to_string(number) +
                            ": another request begins here; a report tells of one request.");
      request_ = request;
      if (command_.empty()) command_ = told["command"].text();
    });
    if (request_.empty())
      throw SlicesRefused(path_ +
                          " does not name the request. Give a file that a run with --slice printed with "
                          "--json; --slice 1/1 is all documents.");
  }

  const std::string& name() const override { return path_; }
  const std::string& request() const override { return request_; }
  const std::string& command() const override { return command_; }

  std::vector<SliceTold> read(const Visit& visit) override {
    std::vector<SliceTold> slices;
    // Of a run that is no slice the first line is a document's.
    const auto current = [&]() -> SliceTold& {
      if (slices.empty() || isOver_) begin(slices, 1, 1);
      return slices.back();
    };
    isOver_ = true;
    forEachLine([&](const JsonValue& line, std::size_t) {
      if (line.has("slice")) {
        begin(slices, static_cast<std::uint32_t>(line["slice"]["number"].number()),
              static_cast<std::uint32_t>(line["slice"]["of"].number()), line["slice"]["run"].text());
      } else if (line.has("summary")) {
        current().stage = SliceTold::Stage::ended;
        isOver_ = true;
      } else if (auto outcome = outcomeFrom(line)) {
        const std::string name = outcome->path;
        visit(current(), keys_.keyOf(name), name, std::move(outcome));
      }
    });
    return slices;
  }

 private:
  /// The last line of a run that was killed may be a part, and is passed over.
  template <class Each>
  void forEachLine(Each each) {
    std::ifstream file(path_, std::ios::binary);
    if (!file) throw SlicesRefused("Cannot read " + path_ + ".");
    std::string line;
    for (std::size_t number = 1; std::getline(file, line); ++number) {
      const auto json = JsonValue::from(line);
      if (json && json->isObject()) each(*json, number);
    }
  }

  void begin(std::vector<SliceTold>& slices, std::uint32_t number, std::uint32_t count,
             const std::string& run = {}) {
    SliceTold& told = slices.emplace_back();
    told.run = run.empty() ? path_ : run;
    told.number = number;
    told.count = std::max<std::uint32_t>(count, 1);
    told.stage = SliceTold::Stage::brokenOff;  // until there is a summary
    isOver_ = false;
  }

  SliceKeys keys_;
  const std::string path_;
  std::string request_;
  std::string command_;
  bool isOver_ = true;  ///< the slice that was read last
};

}  // namespace

std::unique_ptr<SliceReport::Source> sourceInFile(files::FileSystem& system, const std::string& path) {
  return std::make_unique<FileSource>(system, path);
}

}  // namespace pluvo::runs
