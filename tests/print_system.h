// A printing system of a test's own: cupsd on a loopback port with queues whose printers
// keep what they get. There is none where Debian's packages are not installed.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "adapters/files/program.h"
#include "tests/test_machine.h"

namespace tpv {

class PrintSystem {
 public:
  static bool Installed() {
    return ::access("/usr/sbin/cupsd", X_OK) == 0 && ::access("/usr/bin/lp", X_OK) == 0 &&
           ::access("/usr/lib/cups/filter/pdftopdf", X_OK) == 0;
  }

  PrintSystem() { Configure(); }
  ~PrintSystem() { Stop(); }
  PrintSystem(const PrintSystem&) = delete;
  PrintSystem& operator=(const PrintSystem&) = delete;

  void Start() {
    process_ = ::fork();
    if (process_ == 0) {
      ::execl("/usr/sbin/cupsd", "cupsd", "-f", "-c", (folder_ / "etc/cupsd.conf").c_str(), "-s",
              (folder_ / "etc/cups-files.conf").c_str(), nullptr);
      ::_exit(1);
    }
    for (int i = 0; i < 250 && Run("lpstat -r").find("is running") == std::string::npos; ++i) {
      ::usleep(20'000);
    }
  }
  void Stop() {
    if (process_ <= 0) return;
    Signal(SIGCONT);
    Signal(SIGTERM);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
  }
  void Signal(int number) const { ::kill(process_, number); }
  // lpadmin and its like, as shell text.
  std::string Run(const std::string& shell) const {
    return RunProgram({"sh", "-c", "cd " + folder_.path() + "; " + shell}).output;
  }
  // A queue with these sizes as name, width and length in points, the usual one first.
  // `longest`: of a size of the document's own, 0 where the driver has none.
  void AddQueue(const std::string& name, const std::vector<std::string>& sizes, int longest) const;
  // What printers got, in order, as paths; waits for as many as are expected.
  std::vector<std::string> Papers(std::size_t expected) const {
    for (int i = 0; i < 250 && folder_.Files(".done").size() < expected; ++i) ::usleep(20'000);
    std::vector<std::string> papers = folder_.Files(".done");
    for (std::string& paper : papers) paper.resize(paper.size() - 5);
    return papers;
  }

 private:
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name) << text;
  }
  void Configure() const;
  static int FreePort() { return SilentServer().port; }

  TestFolder folder_;
  const int port_ = FreePort();
  TestVariable server_{"CUPS_SERVER", "localhost:" + std::to_string(port_)};
  pid_t process_ = 0;
};

inline void PrintSystem::Configure() const {
  const bool root = ::getuid() == 0;
  for (const char* name : {"etc/ppd", "spool/tmp", "cache", "state", "bin/backend", "out"}) {
    std::filesystem::create_directories(folder_ / name);
  }
  for (const char* name : {"filter", "cgi-bin", "daemon", "monitor", "notifier", "driver"}) {
    std::filesystem::create_directory_symlink(std::string("/usr/lib/cups/") + name,
                                              folder_ / ("bin/" + std::string(name)));
  }
  Write("bin/backend/paper",
        "#!/bin/sh\n[ $# -gt 0 ] || exit 0\nto=" + folder_ / "out/" +
            "$(printf %05d $1)\ncat ${6:--} > $to\ntouch $to.done\n");
  Write("etc/cups-files.conf",
        "ServerRoot " + folder_ / "etc" + "\nServerBin " + folder_ / "bin" + "\nRequestRoot " +
            folder_ / "spool" + "\nTempDir " + folder_ / "spool/tmp" + "\nCacheDir " +
            folder_ / "cache" + "\nStateDir " + folder_ / "state" + "\nAccessLog /dev/null\nErrorLog " +
            folder_ / "errors" + "\nPageLog /dev/null\nFatalErrors config\n" +
            (root ? "User lp\nGroup lp\nSystemGroup root\n" : ""));
  Write("etc/cupsd.conf", "Listen localhost:" + std::to_string(port_) +
                              "\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
                              "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                              "<Policy default>\n<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n"
                              "</Policy>\n");
  // Filters run as another user than root; the printers' own program runs as root.
  Run("chmod -R a+rX .; chmod 0700 bin/backend/paper; chmod 0777 out");
  if (root) Run("chown root:lp spool spool/tmp cache state etc/ppd; chmod 0710 spool; chmod 1770 spool/tmp");
}

inline void PrintSystem::AddQueue(const std::string& name, const std::vector<std::string>& sizes,
                                  int longest) const {
  const std::string usual = sizes[0].substr(0, sizes[0].find(' '));
  std::string ppd =
      "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n*LanguageVersion: English\n"
      "*LanguageEncoding: ISOLatin1\n*PCFileName: \"T.PPD\"\n*Product: \"(T)\"\n*Manufacturer: \"T\"\n"
      "*ModelName: \"T\"\n*ShortNickName: \"T\"\n*NickName: \"T\"\n*PSVersion: \"(3010.000) 0\"\n"
      "*LanguageLevel: \"3\"\n*ColorDevice: False\n*DefaultColorSpace: Gray\n*FileSystem: False\n"
      "*Throughput: \"1\"\n*LandscapeOrientation: Plus90\n*TTRasterizer: Type42\n"
      "*cupsFilter: \"application/vnd.cups-pdf 0 -\"\n";
  if (longest > 0) {
    const std::string most = std::to_string(longest);
    ppd += "*VariablePaperSize: True\n*MaxMediaWidth: \"227\"\n*MaxMediaHeight: \"" + most +
           "\"\n*HWMargins: 0 0 0 0\n*NonUIOrderDependency: 10 AnySetup *CustomPageSize\n"
           "*CustomPageSize True: \"pop pop pop\"\n*ParamCustomPageSize Width: 1 points 72 227\n"
           "*ParamCustomPageSize Height: 2 points 28 " + most + "\n"
           "*ParamCustomPageSize WidthOffset: 3 points 0 0\n"
           "*ParamCustomPageSize HeightOffset: 4 points 0 0\n"
           "*ParamCustomPageSize Orientation: 5 int 0 0\n";
  }
  const auto choices = [&](const std::string& keyword, const auto& value) {
    ppd += "*Default" + keyword + ": " + usual + "\n";
    for (const std::string& size : sizes) {
      const std::size_t blank = size.find(' ');
      ppd += "*" + keyword + " " + size.substr(0, blank) + ": \"" + value(size.substr(blank + 1)) + "\"\n";
    }
  };
  const auto setup = [](const std::string& points) { return "<</PageSize[" + points + "]>>setpagedevice"; };
  for (const std::string keyword : {"PageSize", "PageRegion"}) {
    ppd += "*OpenUI *" + keyword + "/Media Size: PickOne\n*OrderDependency: 10 AnySetup *" + keyword + "\n";
    choices(keyword, setup);
    ppd += "*CloseUI: *" + keyword + "\n";
  }
  choices("ImageableArea", [](const std::string& points) { return "0 0 " + points; });
  choices("PaperDimension", [](const std::string& points) { return points; });
  Write(name + ".ppd", ppd + "*DefaultFont: Courier\n*Font Courier: Standard \"(1.0)\" Standard ROM\n");
  Run("lpadmin -p " + name + " -E -v paper:/ -P " + name + ".ppd");
}

}  // namespace tpv
