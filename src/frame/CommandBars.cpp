#include "frame/CommandTable.h"

namespace ombrelian {
namespace {

// Command, the popup that it is in, whether a line stands in front of it.
// clang-format off
constexpr BarItem kMainBar[] = {
    {460}, {461}, {462}, {463, 0, true}, {464}, {473, 0, true}, {474}, {475}, {476}, {477},
    {478, 0, true}, {479, 478}, {480, 478}, {481, 478}, {482, 478}, {483, 478}, {484, 478},
    {485, 478, true}, {486, 478}, {487, 478}, {488, 478}, {1041, 478, true}, {1042, 478},
    {1043, 478}, {1044, 478}, {1045, 478}, {1046, 478}, {1047, 478}, {1101, 1041}, {501, 1041},
    {502, 1041}, {1102, 1042}, {499, 1042}, {500, 1042}, {1103, 1043}, {496, 1043, true},
    {497, 1043}, {498, 1043}, {1104, 1044}, {493, 1044, true}, {494, 1044}, {495, 1044},
    {1105, 1045}, {1106, 1046}, {491, 1046}, {492, 1046}, {489, 1047}, {490, 1047}, {450}, {451, 450}, {452, 450}, {453, 450},
    {454, 450}, {455, 450}, {456, 450}, {457, 450}, {458, 450}, {459, 450, true}, {389, 0, true},
    {390, 389}, {391, 389}, {392, 389}, {300}, {301, 300}, {302, 300}, {303, 300}, {304, 300},
    {305, 300, true}, {309, 300}, {1023}, {367, 1023}, {1024, 1023, true}, {1030, 1024},
    {1031, 1024}, {1032, 1024}, {1033, 1024}, {1034, 1024}, {1035, 1024}, {1036, 1024},
    {1037, 1024}, {1038, 1024}, {1039, 1024}, {368, 1023}, {369, 1023}, {378, 1023},
    {370, 1023, true}, {371, 1023}, {372, 1023}, {373, 1023, true}, {374, 373}, {375, 373},
    {376, 373}, {377, 373}, {379, 1023, true}, {380, 379}, {381, 379}, {382, 379, true}, {1022},
    {383, 1022}, {385, 1022}, {386, 1022}, {384, 1022, true}, {387, 1022, true}, {388, 1022},
};

constexpr BarItem kHeaderBar[] = {
    {400}, {401}, {402}, {403}, {404}, {405}, {406}, {407},
};

constexpr BarItem kFoldersBar[] = {
    {350}, {351}, {396, 0, true}, {397}, {1009}, {1010, 1009}, {1011, 1009}, {1012, 1009},
    {1013, 1009}, {1014, 1009}, {355, 0, true}, {356}, {357}, {358}, {300, 0, true}, {301, 300},
    {302, 300}, {303, 300}, {304, 300}, {305, 300, true}, {309, 300}, {366}, {467, 366}, {468, 366},
    {469, 366}, {470, 366}, {509, 366, true}, {395, 366}, {352}, {1015, 0, true}, {1016},
    {394}, {507, 0, true}, {506},
};

constexpr BarItem kDrivesBar[] = {
    {361}, {362}, {360, 0, true}, {363}, {364}, {365}, {350, 0, true}, {351}, {300, 0, true},
    {301, 300}, {302, 300}, {303, 300}, {304, 300}, {305, 300, true}, {309, 300}, {366}, {352},
};

constexpr BarItem kFilesBar[] = {
    {360}, {465}, {350, 0, true}, {351}, {355, 0, true}, {356}, {357}, {358}, {450, 0, true},
    {451, 450}, {452, 450}, {459, 450}, {300}, {301, 300}, {302, 300}, {303, 300}, {304, 300},
    {305, 300, true}, {309, 300}, {366}, {509, 366}, {352}, {353, 0, true}, {354},
    {320, 0, true}, {321},
};

constexpr BarItem kTopBar[] = {
    {398}, {420, 398}, {421, 398}, {422, 398}, {423, 398}, {424, 398}, {425, 398}, {350, 0, true},
    {351}, {355, 0, true}, {356}, {357}, {358}, {300, 0, true}, {301, 300}, {302, 300}, {303, 300},
    {304, 300}, {305, 300, true}, {309, 300}, {366}, {509, 366}, {352}, {353, 0, true}, {354},
    {320, 0, true}, {321},
};

constexpr BarItem kHardlinksBar[] = {
    {359}, {350, 0, true}, {351}, {355, 0, true}, {356}, {357}, {358}, {300, 0, true}, {301, 300},
    {302, 300}, {303, 300}, {304, 300}, {305, 300, true}, {309, 300}, {366}, {509, 366}, {352},
    {353, 0, true}, {354}, {320, 0, true}, {321},
};

constexpr BarItem kJunctionsBar[] = {
    {350}, {351}, {355, 0, true}, {356}, {357}, {358}, {366, 0, true}, {509, 366}, {352},
};

constexpr BarItem kOwnersBar[] = {
    {350}, {351}, {300, 0, true}, {301, 300}, {302, 300}, {303, 300}, {304, 300}, {305, 300, true},
    {309, 300}, {366}, {352},
};

constexpr BarItem kExtensionsBar[] = {
    {350}, {351}, {355, 0, true}, {356}, {357}, {358}, {300, 0, true}, {301, 300}, {302, 300},
    {303, 300}, {304, 300}, {305, 300, true}, {309, 300}, {366}, {509, 366}, {352},
};

constexpr BarItem kLogBar[] = {
    {393}, {508}, {504}, {350, 0, true}, {351}, {355, 0, true}, {356}, {357}, {358},
    {366, 0, true}, {509, 366}, {352},
};

// clang-format on

constexpr std::span<const BarItem> kBarTable[] = {
    kMainBar,      kHeaderBar,    kFoldersBar, kDrivesBar,     kFilesBar, kTopBar,
    kHardlinksBar, kJunctionsBar, kOwnersBar,  kExtensionsBar, kLogBar};
static_assert(std::size(kBarTable) == kBars);

}  // namespace

Bar barOf(ListId view) {
  if (isTopList(view)) return Bar::Top;
  switch (view) {
    case ListId::Folders:
      return Bar::Folders;
    case ListId::Drives:
      return Bar::Drives;
    case ListId::Files:
      return Bar::Files;
    case ListId::Hardlinks:
      return Bar::Hardlinks;
    case ListId::Junctions:
      return Bar::Junctions;
    case ListId::Owners:
      return Bar::Owners;
    case ListId::Extensions:
      return Bar::Extensions;
    default:
      return Bar::Log;
  }
}

std::span<const BarItem> barItems(Bar bar) { return kBarTable[std::size_t(bar)]; }

bool hasCommand(ListId view, int id) {
  const bool isOfFolders = view == ListId::LargestFolders || view == ListId::SmallestFolders;
  return !(isOfFolders && findCommand(id)->changesDisk);
}

}  // namespace ombrelian
