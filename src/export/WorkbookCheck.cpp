#include "export/WorkbookCheck.h"

#include <minizip/unzip.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

namespace ombrelian {
namespace {

constexpr char kSheet[] = "xl/worksheets/sheet1.xml";
constexpr std::string_view kCell = "<c ";
constexpr std::string_view kEnd = "</worksheet>";
constexpr std::size_t kPieceBytes = std::size_t(256) * 1024;

struct ArchiveCloser {
  void operator()(void* archive) const { unzClose(archive); }
};
using Archive = std::unique_ptr<void, ArchiveCloser>;

/// Reads the sheet piece by piece.
class SheetReader {
 public:
  void take(std::string_view piece) {
    // The end of the window may contain the beginning of a mark, so it is kept for the next piece.
    window_.erase(0, window_.size() - std::min(window_.size(), kEnd.size()));
    const std::size_t old = window_.size();
    window_ += piece;
    const std::size_t from = old - std::min(old, kCell.size() - 1);
    for (auto at = window_.find(kCell, from); at != std::string::npos;
         at = window_.find(kCell, at + kCell.size())) {
      ++cells_;
    }
  }

  std::uint64_t cells() const { return cells_; }
  bool hasEnd() const {
    return window_.size() >= kEnd.size() &&
           std::string_view(window_).substr(window_.size() - kEnd.size()) == kEnd;
  }

 private:
  std::string window_;
  std::uint64_t cells_ = 0;
};

bool isSheet(unzFile archive) {
  char name[64] = {};
  return unzGetCurrentFileInfo64(archive, nullptr, name, sizeof name - 1, nullptr, 0, nullptr, 0) ==
             UNZ_OK &&
         std::string_view(name) == kSheet;
}

/// Unpacks the current part, into `sheet` if it is the sheet; false: its checksum is wrong.
bool unpack(unzFile archive, SheetReader& sheet) {
  const bool isWanted = isSheet(archive);
  if (unzOpenCurrentFile(archive) != UNZ_OK) return false;
  std::vector<char> buffer(kPieceBytes);
  int got = 0;
  while ((got = unzReadCurrentFile(archive, buffer.data(), unsigned(buffer.size()))) > 0) {
    if (isWanted) sheet.take(std::string_view(buffer.data(), std::size_t(got)));
  }
  return unzCloseCurrentFile(archive) == UNZ_OK && got == 0;
}

}  // namespace

bool isWholeWorkbook(const std::string& path, std::uint64_t cells) {
  const Archive archive(unzOpen64(path.c_str()));
  if (!archive) return false;
  SheetReader sheet;
  for (int at = unzGoToFirstFile(archive.get()); at == UNZ_OK;
       at = unzGoToNextFile(archive.get())) {
    if (!unpack(archive.get(), sheet)) return false;
  }
  return sheet.hasEnd() && sheet.cells() == cells;
}

}  // namespace ombrelian
