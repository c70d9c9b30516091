#include "runs/report_on_slices.h"

#include "errors/document_error.h"
#include "reports/report.h"
#include "runs/run.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace pluvo::runs {
namespace {

/// The names of documents to run again, in a file that must be new.
class RestFile final : public Observer {
 public:
  RestFile(const std::string& path, bool nullEnded)
      : path_(path), end_(nullEnded ? '\0' : '\n'), file_(std::fopen(path.c_str(), "wxe")) {
    if (file_) return;
    throw CannotBegin(CannotBegin::Reason::rest,
                      errno == EEXIST ? path + " is there already; give a new name."
                                      : "cannot make " + path + ": " + std::strerror(errno) + ".");
  }
  RestFile(const RestFile&) = delete;
  RestFile& operator=(const RestFile&) = delete;
  ~RestFile() override {
    if (!isWhole_) std::remove(path_.c_str());
  }

  void document(const Outcome& outcome) override {
    if (outcome.failure) add(outcome.path);
  }
  void leftOut(const LeftOut& leftOut) override { add(leftOut.path); }

  void finish(const SliceReport& slices) {
    const auto going = std::ranges::find(slices.slices(), SliceTold::Stage::going, &SliceTold::stage);
    if (going != slices.slices().end())
      throw SlicesRefused(
          "Slice " + std::to_string(going->number) + " of " + std::to_string(going->count) +
          " is still going on, so its unfinished documents are not known; make the list when it has ended.");
    require(std::fflush(file_.get()) == 0);
    isWhole_ = true;
  }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void add(const std::string& name) {
    if (end_ == '\n' && name.find('\n') != std::string::npos)
      throw CannotBegin(
          CannotBegin::Reason::rest,
          "the name of a document holds a line end; add --null, here and where the list is used.");
    require(std::fwrite(name.data(), 1, name.size(), file_.get()) == name.size() &&
            std::fputc(end_, file_.get()) != EOF);
  }
  void require(bool good) const {
    if (good) return;
    throw errors::DocumentError(errors::Problem::io,
                                "The list " + path_ + " cannot be written: " + std::strerror(errno) + ".");
  }

  const std::string path_;
  const char end_;
  std::unique_ptr<std::FILE, Close> file_;
  bool isWhole_ = false;
};

}  // namespace

void reportOn(SliceReport& slices, const ReportFiles& files, Observer& printer) {
  std::unique_ptr<RestFile> rest;
  std::unique_ptr<Observer> report;
  if (files.report)
    report = reportPrinter(reportPlace(*files.report, files.overwrite), slices.command(), &slices.slices());
  if (files.rest) rest = std::make_unique<RestFile>(*files.rest, files.nullEnded);
  std::vector<Observer*> observers = {&printer};
  if (report) observers.push_back(report.get());
  if (rest) observers.push_back(rest.get());
  slices.tell(observers);
  if (rest) rest->finish(slices);
}

}  // namespace pluvo::runs
