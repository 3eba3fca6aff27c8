// A host for one test: a folder of its own, and the library as any host sees it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "adapters/files/temporary_folder.h"
#include "zrtpv.h"

// Takes a value over and releases it.
inline std::string Text(zrtpv_value value) {
  std::string text =
      value.type == ZRTPV_TEXT ? std::string(value.as.text.bytes, value.as.text.length) : "(no text)";
  zrtpv_clear(&value);
  return text;
}

class TestHost : public testing::Test {
 protected:
  TestHost() { WriteSettings(folder / "paper"); }
  // Tickets go into a folder, whatever printers the machine has.
  void WriteSettings(const std::string& tickets) const {
    std::ofstream(folder / "tpv.conf")
        << "[TPV/Paper]\nDefault=Carpeta de tickets\nTickets=" << tickets << "\n";
  }
  ~TestHost() override {
    const std::int32_t status = till == nullptr ? ZRTPV_OK : zrtpv_release(till);
    EXPECT_EQ(status, ZRTPV_OK) << zrtpv_error();
  }

  zrtpv_options Options() {
    settings_ = folder / "tpv.conf";
    zrtpv_options options{};
    options.size = sizeof options;
    options.settings = settings_.c_str();
    options.host = this;
    options.message = [](void* host, const char* text) {
      static_cast<TestHost*>(host)->messages.emplace_back(text);
    };
    return options;
  }
  void Create() {
    const zrtpv_options options = Options();
    ASSERT_EQ(zrtpv_create(&options, &till), ZRTPV_OK) << zrtpv_error();
  }
  void CreateShop() {
    Create();
    ASSERT_EQ(zrtpv_open_file(till, (folder / "t.db").c_str(), ZRTPV_MAKE_DEMO, 1), ZRTPV_OK);
  }
  std::int32_t Put(const char* property, zrtpv_value value) {
    return zrtpv_put(till, property, &value);
  }
  std::int32_t Number(const char* property) {
    zrtpv_value value;
    EXPECT_EQ(zrtpv_get(till, property, &value), ZRTPV_OK) << zrtpv_error();
    return value.type == ZRTPV_INT16 ? value.as.int16 : value.as.int32;
  }
  zrtpv_object* Object(const char* property = "MyBd") {
    zrtpv_value value;
    EXPECT_EQ(zrtpv_get(till, property, &value), ZRTPV_OK);
    EXPECT_EQ(value.type, ZRTPV_OBJECT);
    return value.as.object;
  }
  // "" when the scenario held, else its transcript.
  std::string Play(const char* script) {
    zrtpv_value transcript;
    const std::int32_t status = zrtpv_play(till, script, &transcript);
    const std::string error = zrtpv_error();
    const std::string text = Text(transcript);
    return status == ZRTPV_OK ? "" : error + "\n" + text;
  }

  tpv::TemporaryFolder folder;
  zrtpv_till* till = nullptr;
  std::vector<std::string> messages;

 private:
  std::string settings_;
};
