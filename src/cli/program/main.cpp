#include "base/fresh_memory.h"
#include "base/utf.h"
#include "errors/document_error.h"
#include "errors/fault.h"
#include "files/file_system.h"
#include "help.h"
#include "parse.h"
#include "printer.h"
#include "report.h"
#include "run.h"
#include "save_request.h"
#include "undo.h"
#include "usage_error.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <system_error>
#include <vector>

namespace {

using namespace pluvo;

int carryOut(const cli::TypedCommandLine& line, files::FileSystem& system) {
  if (line.command == cli::Command::report) return cli::report(line, system);
  if (line.command == cli::Command::undo) return cli::undo(line, system);
  if (line.command == cli::Command::save)
    throw cli::UsageError(
        "Say where to save and what: pluvo save FILE.toml replace --begin TEXT --text TEXT");
  if (line.saveTo) {
    cli::saveRequest(line, system);
    return cli::kFound;
  }
  return cli::run(cli::planFrom(line), system);
}

int runProgram(const std::vector<std::string>& arguments) {
  const cli::TypedCommandLine line = cli::parse(arguments);
  if (line.options.version) {
    cli::writeOut(cli::versionText());
    return cli::kFound;
  }
  if (line.options.help) {
    cli::writeOut(cli::helpText(line.command, cli::Style::forStream(fileno(stdout))));
    return cli::kFound;
  }
  if (!line.command)
    throw cli::UsageError(
        "Say what to do, for instance: pluvo find --begin TEXT DOCUMENT. 'pluvo --help' tells more.");
  return carryOut(line, files::machineFileSystem());
}

}  // namespace

int main(int count, char** words) {
  base::prepareHeap();
  try {
    const int status = runProgram({words + 1, words + count});
    cli::flushOut();
    return status;
  } catch (const cli::UsageError& refused) {
    cli::sayError(refused.what());
  } catch (const std::system_error& failed) {
    cli::sayError(std::string("Cannot write to standard output: ") + std::strerror(failed.code().value()) +
                  ".");
  } catch (const errors::DocumentError& failed) {
    cli::sayError(failed.what());
  } catch (const std::bad_alloc&) {
    cli::sayError("Not enough memory.");
  } catch (const errors::Fault& fault) {
    cli::sayError(base::utf8(fault.description));
  } catch (const std::exception& failed) {
    cli::sayError(failed.what());
  }
  return cli::kFailed;
}
