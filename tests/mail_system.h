// A mail system of a test's own: Postfix on loopback ports with boxes that keep what
// arrives. There is none where Debian's package is not installed, nor for anyone but
// root, whom it wants.
#pragma once

#include <unistd.h>

#include <string>

#include "adapters/files/program.h"
#include "tests/loopback_server.h"

namespace tpv {

class MailSystem {
 public:
  static bool Installed() { return ::getuid() == 0 && ::access("/usr/sbin/postfix", X_OK) == 0; }

  MailSystem() { Run("start"); }
  ~MailSystem() { Run("stop"); }
  MailSystem(const MailSystem&) = delete;
  MailSystem& operator=(const MailSystem&) = delete;

  const int starttls = FreePort(), tls = FreePort();
  const int slow = FreePort();  // answers ten seconds after it has a mail

  std::string Certificate() const { return folder_ / "cert.pem"; }
  // What came for jefa@tienda.es, whose box is the only one, once it is so many.
  std::string Arrived(std::size_t mails) const {
    for (int i = 0; i < 750 && Mails().size() < mails; ++i) ::usleep(20'000);
    std::string all;
    for (const std::string& mail : Mails()) all += ReadFile(mail).value_or("");
    return all;
  }

 private:
  std::vector<std::string> Mails() const {
    std::vector<std::string> found;
    std::error_code none;
    for (const auto& mail : std::filesystem::directory_iterator(folder_ / "boxes/new", none)) {
      found.push_back(mail.path().string());
    }
    return found;
  }
  static int FreePort() { return SilentServer().port; }
  void Run(const std::string& order) const {
    if (order == "start") Configure();
    const ProgramResult said = RunProgram({"postfix", "-c", folder_ / "etc", order});
    if (!said.done && order == "start") throw std::runtime_error(said.output);
  }
  void Configure() const;

  TestFolder folder_;
};

inline void MailSystem::Configure() const {
  for (const char* name : {"etc", "queue", "data", "boxes"}) std::filesystem::create_directory(folder_ / name);
  RunProgram({"sh", "-c", "cd " + folder_.path() + "; chmod 0755 .; chmod 0777 boxes; chown postfix data"});
  MakeCertificate(Certificate(), folder_ / "key.pem", "IP:127.0.0.1");
  std::ofstream(folder_ / "etc/boxes") << "jefa@tienda.es ./\n";
  std::ofstream(folder_ / "etc/main.cf")
      << "compatibility_level = 3.6\nmail_owner = postfix\nsetgid_group = postdrop\n"
         "command_directory = /usr/sbin\ndaemon_directory = /usr/lib/postfix/sbin\n"
         "inet_interfaces = 127.0.0.1\ninet_protocols = ipv4\nmyhostname = correo.tienda.es\n"
         "mydestination =\nvirtual_mailbox_domains = tienda.es\nvirtual_minimum_uid = 1\n"
         "virtual_uid_maps = static:65534\nvirtual_gid_maps = static:65534\n"
         "smtpd_tls_security_level = may\nsmtpd_tls_received_header = yes\n"
      << "queue_directory = " << folder_ / "queue" << "\ndata_directory = " << folder_ / "data"
      << "\nmaillog_file = " << folder_ / "log" << "\nmaillog_file_prefixes = " << folder_.path()
      << "\nvirtual_mailbox_base = " << folder_ / "boxes" << "\nvirtual_mailbox_maps = texthash:"
      << folder_ / "etc/boxes" << "\nsmtpd_tls_cert_file = " << Certificate()
      << "\nsmtpd_tls_key_file = " << folder_ / "key.pem" << "\n";
  std::ofstream services(folder_ / "etc/master.cf");
  const auto server = [&](int port, const char* option) {
    services << "127.0.0.1:" << port << " inet n - n - - smtpd\n  -o { " << option << " }\n";
  };
  server(starttls, "smtpd_tls_security_level = encrypt");
  server(tls, "smtpd_tls_wrappermode = yes");
  server(slow, "smtpd_end_of_data_restrictions = sleep 10");
  services << "cleanup unix n - n - 0 cleanup\nqmgr unix n - n 300 1 qmgr\nrewrite unix - - n - - trivial-rewrite\n"
              "bounce unix - - n - 0 bounce\ndefer unix - - n - 0 bounce\ntrace unix - - n - 0 bounce\n"
              "virtual unix - n n - - virtual\nerror unix - - n - - error\nretry unix - - n - - error\n"
              "anvil unix - - n - 1 anvil\ntlsmgr unix - - n 1000? 1 tlsmgr\nproxymap unix - - n - - proxymap\n"
              "postlog unix-dgram n - n - 1 postlogd\n";
}

}  // namespace tpv
