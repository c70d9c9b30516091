#include "runs/sliced.h"

#include "journal/named_runs.h"
#include "saved/toml_text.h"

#include <nettle/sha2.h>

#include <array>
#include <filesystem>

namespace pluvo::runs {

std::string requestTextOf(const Plan& plan) {
  std::string text;
  const auto line = [&](bool wanted, const std::string& words) {
    if (wanted) text += words + "\n";
  };
  bool confirms = false;
  for (const engine::Request& request : plan.requests) {
    text += tomlOf(request);
    confirms |= request.confirmEach;
  }
  line(confirms, "confirm");
  line(plan.dryRun, "dry-run");
  line(plan.keepGoing, "keep-going");
  line(!plan.encoding.empty(), "encoding " + plan.encoding);
  if (plan.backupSuffix) line(true, "backup " + *plan.backupSuffix);
  if (plan.outputFolder)
    line(true, "output " + std::filesystem::absolute(*plan.outputFolder).lexically_normal().native());
  return text;
}

std::string requestDigestOf(const std::string& requestText) {
  sha256_ctx context = {};
  sha256_init(&context);
  sha256_update(&context, requestText.size(), reinterpret_cast<const std::uint8_t*>(requestText.data()));
  std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest = {};
  sha256_digest(&context, digest.size(), digest.data());
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string digits;
  for (const std::uint8_t byte : digest) digits += {kDigits[byte >> 4U], kDigits[byte & 15U]};
  return digits;
}

std::string requestDigestOf(const Plan& plan) { return requestDigestOf(requestTextOf(plan)); }

bool isRunName(const std::string& name) { return journal::isNameForRun(name); }

}  // namespace pluvo::runs
