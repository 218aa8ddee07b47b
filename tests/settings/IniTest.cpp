#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <random>

#include "settings/z_INI.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

constexpr TextView kNone = u"(none)";

std::string utf16(TextView text) {
  std::string bytes(kIniByteOrderMark);
  for (const char16_t unit : text) {
    bytes.push_back(char(unit & 0xFF));
    bytes.push_back(char(unit >> 8));
  }
  return bytes;
}

class IniTest : public ::testing::Test {
 protected:
  void put(const std::string& bytes) const { folder.write("f.ini", bytes); }
  void put(TextView text) const { put(utf16(text)); }
  Text content() const { return readReport(folder.path("f.ini")); }
  static Text get(const IniStore& store, TextView section, TextView key) {
    return store.INI_ReadString(section, key, kNone);
  }

  const TestFolder folder{TestFolder::Place::Memory};
  const Text path = folder.text("f.ini");
};

TEST_F(IniTest, Reading) {
  put(u"early=no\r\n[Optionen]\r\n ; c=1\r\nPlain=text\r\n Blanks \t=\t a b \t\r\n"
      u"Quoted=\" = \"\r\nSingle=' x '\r\nNested=\"\"in\"\"\r\nOpen=\"in\r\nOne=\"\r\nEmpty=\r\n"
      u"Blank=   \r\n"
      u"odd line\r\n=odd\r\nSign=a=b;c\r\nTwice=1\r\ntwice=2\r\n\u00C4\u0416=\u4E16\r\n"
      u"[ Mac ]\rA=cr\r[Unix]\nA=lf\n[Optionen]\r\nLater=yes\r\n[Open\r\nHalf=\xD800\r\n"
      u"Last=no line end");
  const IniStore store(path);
  for (const TextView line :
       fields(u"Optionen/Plain=text|OPTIONEN/pLAIN=text|Optionen/Blanks=a b|Optionen/Quoted= = |"
              u"Optionen/Single= x |Optionen/Nested=\"in\"|Optionen/Open=\"in|Optionen/One=\"|"
              u"Optionen/Empty=|Optionen/Blank=|Optionen/; c=(none)|Optionen/odd line=(none)|"
              u"Optionen/=(none)|Optionen/Sign=a=b;c|Optionen/Twice=1|Optionen/\u00E4\u0436=\u4E16|"
              u"Optionen/Later=yes|Optionen/Half=\xD800|Optionen/Last=no line end|"
              u"Optionen/early=(none)|Mac/a=cr|unix/A=lf|Other/Plain=(none)|/early=(none)")) {
    const auto slash = line.find(u'/');
    const auto sign = line.find(u'=');
    const TextView key = line.substr(slash + 1, sign - slash - 1);
    EXPECT_EQ(get(store, line.substr(0, slash), key), line.substr(sign + 1)) << toBytes(line);
  }
}

TEST_F(IniTest, NamesFoldAlikeWhereTheLocaleHasADotlessI) {
  const ScopedLocale turkish("tr_TR.UTF-8");
  put(u"[Allgemein]\r\nINSTANZ=1\r\n\u00C4I=2\r\n");
  const IniStore store(path);
  EXPECT_EQ(get(store, u"allgemeIn", u"instanz"), u"1");
  EXPECT_EQ(get(store, u"Allgemein", u"\u00E4i"), u"2");
}

TEST_F(IniTest, LongValuesAreCutOnReadingAlone) {
  const Text longest(4095, u'x');
  {
    IniStore store(path);
    store.INI_WriteString(u"S", u"Fits", longest);
    store.INI_WriteString(u"S", u"Long", longest + u"yz");
  }
  const IniStore store(path);
  EXPECT_EQ(get(store, u"S", u"Fits"), longest);
  EXPECT_EQ(get(store, u"S", u"Long"), longest);
  EXPECT_EQ(store.INI_ReadString(u"S", u"None", longest + u"y"), longest);
  EXPECT_NE(content().find(longest + u"yz"), Text::npos);
}

TEST_F(IniTest, WritingLeavesTheRestAsItWas) {
  const Text before =
      u"; mine\n\n[A]\nx = 1\n; about y\ny=2\r\nY=second\nodd\n\n; about B\n[B]\nz=\"3\"\n"
      u"[a]\nw=4\n[Gone]\n;inside\nv=5\n[gonE]\nt=7\n\n; after\n[End]\nu=6";
  const struct {
    std::vector<TextView> writes;  // section, key, value; a section without a key is deleted
    Text from, to;
  } cases[] = {
      {{u"a|Y|2", u"A|x\r|1", u"A|x|1\n[B]\nz=evil"}, u"", u""},
      {{u"a|Y|new"}, u"y=2\r\n", u"y=new\r\n"},         // the line end and the spelling are kept
      {{u"A|n|1"}, u"Y=second\n", u"Y=second\nn=1\n"},  // a new key is added after the last key
      {{u"B|n|1", u"B|m|2", u"B|n|3"}, u"z=\"3\"\n", u"z=\"3\"\nn=3\nm=2\n"},
      {{u"End|n|1"}, u"u=6", u"u=6\nn=1\n"},  // a missing line end is added
      {{u"New|n|1"}, u"u=6", u"u=6\n[New]\nn=1\n"},
      {{u"gone"}, u"[Gone]\n;inside\nv=5\n[gonE]\nt=7\n", u""},
      {{u"Gone", u"Gone|n|1"}, u"[Gone]\n;inside\nv=5\n[gonE]\nt=7\n", u"[Gone]\nn=1\n"},
  };
  for (const auto& c : cases) {
    put(before);
    {
      IniStore store(path);
      for (const TextView line : c.writes) {
        const std::vector<Text> write = fields(line);
        if (write.size() == 1) store.INI_DeleteSection(write[0]);
        if (write.size() == 3) store.INI_WriteString(write[0], write[1], write[2]);
      }
      store.INI_WriteString(u"A", u"y", TextView(u"\0", 1));  // a line cannot contain this
    }
    Text expected = before;
    expected.replace(before.find(c.from), c.from.size(), c.to);
    EXPECT_EQ(content(), expected) << toBytes(c.writes[0]);
  }
}

/// Random keys and values that a file can contain, compared with a map after each reading.
TEST_F(IniTest, AgreesWithAMapOverRandomChanges) {
  std::mt19937 random(20261122);
  const std::vector<Text> parts =
      fields(u"a|B|\u00C4| |\"|'|\t|;|[|]|=|#|\U0001F4C1|\xDC80|0|\uFEFF|\u2028");
  const auto text = [&](std::size_t length, std::size_t of) {
    Text result;
    for (std::size_t i = random() % (length + 1); i > 0; --i)
      result += parts[random() % of];
    return result;
  };
  std::map<std::pair<Text, Text>, Text> model;
  auto store = std::make_unique<IniStore>(path);
  for (int step = 0; step < 6000; ++step) {
    // Each value has one spelling of its name, because the map compares with case.
    const Text section = u"S" + asciiLower(text(1, 2));
    const Text key = u"K" + asciiLower(text(2, 2)) + toText(std::int64_t(random() % 4));
    const auto deed = random() % 40;
    if (deed == 0) {
      store->INI_DeleteSection(asciiUpper(section));
      std::erase_if(model, [&](const auto& entry) { return entry.first.first == section; });
    } else if (deed == 1) {
      ASSERT_FALSE(store->flush());
    } else if (deed == 2) {
      store = nullptr;  // writes the file before it is read again
      store = std::make_unique<IniStore>(path);
    } else {
      const Text value = text(6, parts.size());
      store->INI_WriteString(section, random() % 2 == 0 ? key : asciiUpper(key),
                             IniText::quoted(value));
      model[{section, key}] = value;
    }
    const auto entry = model.find({section, key});
    ASSERT_EQ(get(*store, section, key), entry == model.end() ? Text(kNone) : entry->second);
  }
  store = nullptr;
  const IniStore reopened(path);
  for (const auto& [name, value] : model)
    EXPECT_EQ(get(reopened, name.first, name.second), value);
  EXPECT_GT(model.size(), 20U);
}

TEST_F(IniTest, TwoInstancesLoseOnlyWhatBothWrote) {
  put(u"[S]\r\na=0\r\nb=0\r\nc=0\r\n[List]\r\nO0=x\r\nO1=y\r\n");
  IniStore first(path);
  IniStore second(path);
  first.INI_WriteString(u"S", u"a", u"first");
  first.INI_WriteString(u"S", u"c", u"first");
  first.INI_WriteString(u"New", u"n", u"first");
  second.INI_WriteString(u"s", u"B", u"second");
  second.INI_WriteString(u"S", u"c", u"0");
  second.INI_DeleteSection(u"List");
  second.INI_WriteString(u"List", u"O0", u"z");
  EXPECT_FALSE(first.flush() || second.flush());
  EXPECT_EQ(content(),
            u"[S]\r\na=first\r\nb=second\r\nc=0\r\n[List]\r\nO0=z\r\n[New]\r\nn=first\r\n")
      << "written last wins, even where the writer saw no change";
  EXPECT_EQ(get(second, u"S", u"a"), u"first");
  EXPECT_EQ(get(first, u"S", u"b"), u"0");
  EXPECT_FALSE(first.refresh());
  EXPECT_EQ(get(first, u"S", u"b"), u"second");
  first.INI_WriteString(u"S", u"a", u"again");
  EXPECT_FALSE(first.flush());
  EXPECT_EQ(get(IniStore(path), u"S", u"b"), u"second");
}

TEST_F(IniTest, ProgramsThatWriteAtTheSameMomentLoseNoKey) {
  constexpr int kPrograms = 4;
  constexpr int kKeys = 40;
  for (int program = 0; program < kPrograms; ++program) {
    if (fork() != 0) continue;
    for (int key = 0; key < kKeys; ++key)
      IniStore(path).INI_WriteString(u"S", u"k" + toText(program * kKeys + key), u"v");
    _exit(0);
  }
  while (wait(nullptr) > 0) {
  }
  const IniStore store(path);
  for (int key = 0; key < kPrograms * kKeys; ++key)
    EXPECT_EQ(get(store, u"S", u"k" + toText(key)), u"v") << key;
}

TEST_F(IniTest, ABurstIsOneWriteAndNothingNewIsNone) {
  IniStore store(path);
  const ScopedFault renames({Call::Renameat, "f.ini", EIO, 1});
  for (int i = 0; i < 100; ++i)
    store.INI_WriteString(u"S", u"k" + toText(i), u"v");
  EXPECT_FALSE(store.flush());
  store.INI_WriteString(u"S", u"k5", u"v");
  EXPECT_FALSE(store.flush());
  EXPECT_EQ(renames.hits(), 0) << "a second write";
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"f.ini"});
}

TEST_F(IniTest, AFailedWriteKeepsTheOldFileAndTheChanges) {
  put(u"[S]\r\na=old\r\n");
  IniStore store(path);
  store.INI_WriteString(u"S", u"a", u"new");
  const Fault faults[] = {
      {.call = Call::Write, .error = ENOSPC},
      {.call = Call::Close, .error = EDQUOT, .skip = 1},  // the first close is that of the old file
      {.call = Call::Renameat, .name = "f.ini", .error = EACCES},
      {.call = Call::Openat, .name = "f.ini", .error = EACCES},
      {.call = Call::Statx, .name = "f.ini", .error = EACCES},
  };
  for (const Fault& fault : faults) {
    const ScopedFault scoped(fault);
    EXPECT_FALSE(store.flush().value_or(Error()).text.empty()) << int(fault.call);
    EXPECT_EQ(content(), u"[S]\r\na=old\r\n") << int(fault.call);
    EXPECT_EQ(namesIn(folder.path()).size(), 1U) << "nothing is left beside it";
    EXPECT_EQ(get(store, u"S", u"a"), u"new");
  }
  EXPECT_FALSE(store.flush());
  EXPECT_EQ(content(), u"[S]\r\na=new\r\n");
}

TEST_F(IniTest, ReadOnlyMissingAndUnreadable) {
  put(u"[S]\r\na=old\r\n");
  folder.chmod("f.ini", 0444);
  {
    IniStore store(path);
    EXPECT_EQ(get(store, u"S", u"a"), u"old");
    store.INI_WriteString(u"S", u"a", u"new");
    EXPECT_EQ(store.flush().value_or(Error()).number, std::int32_t(platform::kAccessDenied));
  }
  EXPECT_EQ(content(), u"[S]\r\na=old\r\n");

  IniStore nowhere(folder.text("no/such/folder.ini"));
  EXPECT_EQ(get(nowhere, u"S", u"a"), kNone);
  nowhere.INI_WriteString(u"S", u"a", u"1");
  EXPECT_TRUE(nowhere.flush());

  // A file that could not be read must not be replaced by the few known values.
  folder.chmod("f.ini", 0644);
  std::optional<ScopedFault> denied(Fault{.call = Call::Openat, .name = "f.ini", .error = EACCES});
  IniStore store(path);
  denied.reset();
  EXPECT_EQ(get(store, u"S", u"a"), kNone);
  store.INI_WriteString(u"S", u"b", u"new");
  EXPECT_FALSE(store.flush());
  EXPECT_EQ(content(), u"[S]\r\na=old\r\nb=new\r\n");
}

TEST_F(IniTest, KeepsModeAndLink) {
  put(u"[S]\r\na=old\r\n");
  folder.chmod("f.ini", 0600);
  folder.symlink("link.ini", "f.ini");
  IniStore(folder.text("link.ini")).INI_WriteString(u"S", u"a", u"new");
  EXPECT_EQ(folder.modeOf("f.ini"), 0600U);
  EXPECT_EQ(content(), u"[S]\r\na=new\r\n");
  EXPECT_EQ(folder.modeOf("link.ini"), 0777U) << "it is a link still";
}

/// A file that is cut at any length or has a wrong byte at any place can be opened and written, and
/// the undamaged part is kept.
TEST_F(IniTest, DamageAtEveryByte) {
  const std::string whole = utf16(u"[S]\r\na=1\r\n\r\n;\r\n[T]\r\nb=\"2\"\r\nc=\xD83D\xDE00\r\n");
  const std::size_t aIsWhole = utf16(u"[S]\r\na=1").size();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    put(whole.substr(0, size));
    IniStore(path).INI_WriteString(u"U", u"n", u"new");
    const IniStore store(path);
    EXPECT_EQ(get(store, u"U", u"n"), u"new") << size;
    EXPECT_EQ(get(store, u"S", u"a") == u"1", size >= aIsWhole) << size;
  }
  for (std::size_t at = 2; at < whole.size(); ++at) {
    for (const char bad : {'\0', '\n', '\r', '[', '=', '\xD8'}) {
      std::string bytes = whole;
      bytes[at] = bad;
      put(bytes);
      IniStore(path).INI_WriteString(u"U", u"n", u"new");
      EXPECT_EQ(get(IniStore(path), u"U", u"n"), u"new") << at << " " << int(bad);
    }
  }
}

TEST_F(IniTest, AFileOfTheCodePageIsReadAsSuch) {
  put(std::string("[Allgemein]\nLang=12\nName=\xC3\xA4\xFF\n"));
  const IniStore store(path);
  EXPECT_EQ(get(store, u"Allgemein", u"Lang"), u"12");
  EXPECT_EQ(get(store, u"Allgemein", u"Name"), u"\u00E4\xDCFF");
}

}  // namespace
}  // namespace ombrelian
