// Files made smaller, in gzip's format, and back again.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

// Both write a new file for the user alone, whole and on the disk, and throw
// FileError otherwise, leaving none behind; a file of that name is refused.
void CompressFile(const std::string& from, const std::string& to);
// Refuses what is no such file or damaged.
void ExpandFile(const std::string& from, const std::string& to);

// Reads all of a compressed file against its own checksum; the bytes that it expands
// to. Throws FileError when it is damaged.
std::uintmax_t ExpandedSize(const std::string& compressed);

}  // namespace tpv
