// The tax agency's stand-in on the loopback, and a shop's certificates for it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "adapters/files/file_settings.h"
#include "tests/loopback_server.h"

namespace tpv {

class AgencyFixture : public ::testing::Test {
 protected:
  TestFolder folder;
  FileSettings settings{folder / "tpv.conf"};

  // Before the agency is asked for.
  bool MakeCertificates() {
    bool made = MakeCertificate(folder / "server.pem", folder / "server.key", "IP:127.0.0.1") &&
                MakeCertificate(folder / "shop.pem", folder / "shop.key", "DNS:tienda.es");
    for (const char* name : {"shop.key", "server.key"}) made = made && ::chmod((folder / name).c_str(), 0600) == 0;
    Set("Certificate", folder / "shop.pem");
    Set("Key", folder / "shop.key");
    Set("CaFile", folder / "server.pem");
    return made;
  }
  void StartAgency() {
    const std::string schemas = std::string(TPV_TEST_FOLDER) + "/../../shared/fiscal";
    const bool checked = std::filesystem::exists(schemas) && RunProgram({"xmllint", "--version"}).found;
    server_.emplace("agency.py", folder, " " + folder / "server.pem" + " " + folder / "server.key" + " " +
                                             folder / "shop.pem" + (checked ? " " + schemas : ""));
    Set("TestServer", "https://127.0.0.1:" + std::to_string(server_->port));
  }
  void StopAgency() { server_.reset(); }
  void Set(const char* key, const std::string& value) { settings.Write("TPV", "Fiscal", key, value); }
  // What the agency does with the next messages, one a line.
  void Order(const std::string& orders) const { std::ofstream(folder / "orders") << orders; }
  // What it noted since the last time.
  std::string Log() const {
    std::string text = std::filesystem::exists(folder / "log") ? folder.Text("log") : "";
    std::filesystem::remove(folder / "log");
    return text;
  }

 private:
  std::optional<LoopbackServer> server_;
};

}  // namespace tpv
