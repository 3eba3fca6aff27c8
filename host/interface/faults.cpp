#include "host/interface/faults.h"

#include <atomic>
#include <cstring>

#include "adapters/headless/scenario/script.h"
#include "base/text.h"
#include "component/dispatch.h"
#include "host/host_windows.h"
#include "host/play.h"
#include "platform/database.h"
#include "platform/objects.h"
#include "platform/printer.h"

namespace tpv::interface {

namespace {

// Plain memory: it needs no end when its thread or the library goes.
struct LastResult {
  std::int32_t status = ZRTPV_OK;
  char text[2000] = "";
  char callback[2000] = "";
};
thread_local LastResult last;

// Cut to fit, between characters.
template <std::size_t Size>
void Copy(char (&to)[Size], const char* from) noexcept {
  std::size_t length = std::strlen(from);
  if (length >= Size) {
    length = Size - 1;
    while (length > 0 && (static_cast<unsigned char>(from[length]) & 0xC0) == 0x80) --length;
  }
  std::memmove(to, from, length);
  to[length] = '\0';
}

zrtpv_status StatusOf(DispatchFault fault) {
  switch (fault) {
    case DispatchFault::UnknownName: return ZRTPV_E_NAME;
    case DispatchFault::UnknownId: return ZRTPV_E_ID;
    case DispatchFault::WrongKind: return ZRTPV_E_KIND;
    case DispatchFault::WrongCount: return ZRTPV_E_COUNT;
    default: return ZRTPV_E_VALUE;
  }
}

}  // namespace

std::int32_t Keep(zrtpv_status status, const char* text) noexcept {
  last.status = status;
  Copy(last.text, text);
  return status;
}

std::int32_t KeepException() noexcept {
  try {
    throw;
  } catch (const Fault& error) {
    return Keep(error.status(), error.what());
  } catch (const DispatchError& error) {
    return Keep(StatusOf(error.fault()), error.what());
  } catch (const ConversionError& error) {
    return Keep(ZRTPV_E_VALUE, error.what());
  } catch (const CommitUnknown& error) {
    return Keep(ZRTPV_E_COMMIT_UNKNOWN, error.what());
  } catch (const DatabaseError& error) {
    return Keep(ZRTPV_E_DATABASE, error.what());
  } catch (const ObjectError& error) {
    return Keep(ZRTPV_E_COMPONENT, error.what());
  } catch (const PrintError& error) {
    return Keep(ZRTPV_E_PRINT, error.what());
  } catch (const NoWindows& error) {
    return Keep(ZRTPV_E_WINDOWS, error.what());
  } catch (const scenario::ScriptError& error) {
    return Keep(ZRTPV_E_SCRIPT, error.what());
  } catch (const UsageError& error) {
    return Keep(ZRTPV_E_ARGUMENT, error.what());
  } catch (const std::bad_alloc&) {
    return Keep(ZRTPV_E_OTHER, "No queda memoria");
  } catch (const std::exception& error) {
    return Keep(ZRTPV_E_OTHER, error.what());
  } catch (...) {
    return Keep(ZRTPV_E_OTHER, "Error desconocido");
  }
}

const char* LastText() noexcept { return last.text; }
std::int32_t LastStatus() noexcept { return last.status; }

void SetCallbackText(const char* text) noexcept { Copy(last.callback, text == nullptr ? "" : text); }

std::string TakeCallbackText() {
  std::string text = ValidUtf8(last.callback);
  last.callback[0] = '\0';
  return text;
}

std::uint64_t ThisThread() noexcept {
  static std::atomic<std::uint64_t> count{0};
  thread_local const std::uint64_t number = ++count;
  return number;
}

}  // namespace tpv::interface
