#include "adapters/files/pdf/fonts.h"

#include <fontconfig/fontconfig.h>

#include <cstdlib>
#include <memory>
#include <mutex>

namespace tpv {

namespace {

constexpr const char* kPlaces = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <dir>/usr/local/share/fonts</dir>
  <dir prefix="xdg">fonts</dir>
  <dir>~/.fonts</dir>
  <cachedir>/var/cache/fontconfig</cachedir>
  <cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>
)";

struct Release {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, Release>;

enum class Found { AsUsual, ByName, ByRules };

std::mutex changing;
Found fonts_found = Found::AsUsual;

const FcChar8* Bytes(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

bool Has(FcConfig* config, const char* wanted) {
  const FcFontSet* fonts = FcConfigGetFonts(config, FcSetSystem);
  for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
    FcChar8* family = nullptr;
    if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) != FcResultMatch) continue;
    if (FcStrCmpIgnoreCase(family, Bytes(wanted)) == 0) return true;
  }
  return false;
}

}  // namespace

void FindFontsByName(const char* family) {
  const std::lock_guard lock(changing);
  if (fonts_found == Found::ByRules || std::getenv("FONTCONFIG_FILE") != nullptr) return;
  const Config config(FcConfigCreate());
  const bool read = config != nullptr && FcConfigParseAndLoadFromMemory(config.get(), Bytes(kPlaces), FcTrue) == FcTrue &&
                    FcConfigBuildFonts(config.get()) == FcTrue;
  if (read && Has(config.get(), family) && FcConfigSetCurrent(config.get()) == FcTrue) fonts_found = Found::ByName;
}

void ReadFontRules() {
  const std::lock_guard lock(changing);
  if (fonts_found != Found::ByName) return;
  const Config config(FcInitLoadConfigAndFonts());
  if (config != nullptr) FcConfigSetCurrent(config.get());
  fonts_found = Found::ByRules;
}

}  // namespace tpv
