#include "adapters/qt/till_fonts.h"

#include <fontconfig/fontconfig.h>

#include <cstdlib>
#include <memory>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

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

const FcChar8* Bytes(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

bool HasTillFont(FcConfig* config) {
  const FcFontSet* fonts = FcConfigGetFonts(config, FcSetSystem);
  for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
    FcChar8* family = nullptr;
    if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) != FcResultMatch) continue;
    if (FcStrCmpIgnoreCase(family, Bytes(kTillFont)) == 0) return true;
  }
  return false;
}

}  // namespace

void UseTillFonts() {
  if (std::getenv("FONTCONFIG_FILE") != nullptr) return;
  const std::unique_ptr<FcConfig, void (*)(FcConfig*)> config(FcConfigCreate(), FcConfigDestroy);
  const bool read = config != nullptr && FcConfigParseAndLoadFromMemory(config.get(), Bytes(kPlaces), FcTrue) == FcTrue &&
                    FcConfigBuildFonts(config.get()) == FcTrue;
  if (read && HasTillFont(config.get())) FcConfigSetCurrent(config.get());
}

}  // namespace tpv::qt
