// A server of this folder's Python scripts on the loopback, for the time of a test,
// and certificates for it.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "adapters/files/program.h"
#include "tests/test_machine.h"

namespace tpv {

// The script gets the folder and the words behind it, prints its port, and ends
// with its input.
class LoopbackServer {
 public:
  LoopbackServer(const std::string& script, const TestFolder& folder, const std::string& words = "") {
    const std::string command = std::string(TPV_TEST_FOLDER) + "/" + script + " " + folder.path() + words +
                                " > " + folder / "port" + " 2> " + folder / "errors";
    process_ = ::popen(command.c_str(), "w");
    for (int i = 0; i < 1500 && !folder.Text("port").ends_with('\n'); ++i) ::usleep(20'000);
    port = std::atoi(folder.Text("port").c_str());
  }
  ~LoopbackServer() { ::pclose(process_); }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  int port = 0;

 private:
  FILE* process_;
};

// Signed by itself: whoever trusts the file trusts its owner. `name` as in
// "DNS:tienda.es" or "IP:127.0.0.1". False without the openssl program.
inline bool MakeCertificate(const std::string& certificate, const std::string& key,
                            const std::string& name) {
  return RunProgram({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out",
                     certificate, "-days", "2", "-subj", "/CN=tienda", "-addext",
                     "subjectAltName=" + name})
      .done;
}

}  // namespace tpv
