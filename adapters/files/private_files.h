// The user's own folders, and files in them that nobody else can read.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tpv {

class Descriptor;

class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What an errno means, in the operator's words.
std::string Reason(int error);

std::string ConfigFolder();  // ${XDG_CONFIG_HOME:-~/.config}/tpv
std::string DataFolder();    // ${XDG_DATA_HOME:-~/.local/share}/tpv
// A path as a technician writes it, with "~/" for the user's home.
std::string ExpandHome(const std::string& path);

// A text as part of a file name: lower-case letters, digits and dashes, 40
// characters at most, never empty. Other names cannot come out of it.
std::string FileNamePiece(std::string_view text);

// Makes the folder and those above it, for the user alone. Throws FileError, also when
// one of them is a link that another user laid there.
void MakePrivateFolder(const std::string& path);
// False when the file is there already. Nothing is left behind by a failure.
bool CreatePrivateFile(const std::string& path, std::string_view bytes);
// The file holds either the old bytes or all the new ones, whatever happens. A link
// stays one, and the file that it leads to is written.
void ReplacePrivateFile(const std::string& path, std::string_view bytes);
// Writes a file that was just made at the path, and takes it away again when that fails.
void FillNewFile(const Descriptor& file, const std::string& path, std::string_view bytes);
// A name that the file was given, or lost, survives a power cut.
void SyncFolderOf(const std::string& path);
// Takes other users' right to read or write it from a file; false when they had none.
// Throws FileError when it cannot.
bool MakePrivate(const std::string& path);
// Nullopt when there is no such file.
std::optional<std::string> ReadFile(const std::string& path);

}  // namespace tpv
