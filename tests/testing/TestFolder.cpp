#include "tests/testing/TestFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ombrelian::testing {
namespace {

std::string makeFolder(TestFolder::Place place) {
  const char* base = getenv("TMPDIR");
  if (base == nullptr) base = "/tmp";
  if (place == TestFolder::Place::Memory && access("/dev/shm", W_OK) == 0) base = "/dev/shm";
  std::string pattern = std::string(base) + "/ombrelian-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) abort();
  return pattern;
}

/// Exit status of a program without output; not 0 if the program could not be started.
int run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = -1;
  if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0) {
    waitpid(child, &status, 0);
  }
  posix_spawn_file_actions_destroy(&actions);
  return status;
}

}  // namespace

TestFolder::TestFolder(Place place) : path_(makeFolder(place)) {}

TestFolder::~TestFolder() {
  // Some tests make trees that are too deep for std::filesystem.
  if (run({"rm", "-rf", "--", path_}) == 0) return;
  run({"chmod", "-R", "u+rwX", "--", path_});
  run({"rm", "-rf", "--", path_});
}

std::string TestFolder::path(std::string_view name) const {
  return path_ + "/" + std::string(name);
}

void TestFolder::folder(std::string_view name) const {
  std::filesystem::create_directories(path(name));
}

void TestFolder::file(std::string_view name, std::int64_t size) const {
  const std::string full = path(name);
  std::filesystem::create_directories(std::filesystem::path(full).parent_path());
  const int fd = open(full.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  EXPECT_GE(fd, 0) << full;
  EXPECT_EQ(ftruncate(fd, size), 0);
  close(fd);
}

void TestFolder::write(std::string_view name, std::string_view content) const {
  std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << content;
}

void TestFolder::symlink(std::string_view name, std::string_view target) const {
  EXPECT_EQ(::symlink(std::string(target).c_str(), path(name).c_str()), 0);
}

void TestFolder::hardlink(std::string_view name, std::string_view existing) const {
  EXPECT_EQ(link(path(existing).c_str(), path(name).c_str()), 0);
}

void TestFolder::rename(std::string_view from, std::string_view to) const {
  EXPECT_EQ(::rename(path(from).c_str(), path(to).c_str()), 0) << from;
}

void TestFolder::chmod(std::string_view name, unsigned mode) const {
  EXPECT_EQ(::chmod(path(name).c_str(), mode), 0) << name;
}

bool TestFolder::has(std::string_view name) const { return access(path(name).c_str(), F_OK) == 0; }

unsigned TestFolder::modeOf(std::string_view name) const {
  struct stat told = {};
  EXPECT_EQ(lstat(path(name).c_str(), &told), 0) << name;
  return told.st_mode & 07777;
}

int TestFolder::chain(std::string_view name, int levels, std::string_view base) const {
  const std::string step(name);
  int fd = open(path(base).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < levels; ++level) {
    EXPECT_EQ(mkdirat(fd, step.c_str(), 0755), 0);
    const int inner = openat(fd, step.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    close(fd);
    fd = inner;
  }
  EXPECT_GE(fd, 0);
  return fd;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

Text readReport(const std::string& path) {
  const std::string bytes = readFile(path);
  EXPECT_TRUE(bytes.starts_with("\xFF\xFE")) << path;
  EXPECT_EQ(bytes.size() % 2, 0U);
  Text text;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    text.push_back(char16_t(static_cast<unsigned char>(bytes[i]) |
                            static_cast<unsigned char>(bytes[i + 1]) << 8));
  }
  return text;
}

std::vector<Text> lines(TextView text) {
  std::vector<Text> result;
  while (!text.empty()) {
    const auto end = text.find(u"\r\n");
    result.emplace_back(text.substr(0, end));
    text.remove_prefix(end == TextView::npos ? text.size() : end + 2);
  }
  return result;
}

std::string outputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  std::array<char, 4096> buffer;
  while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), pipe))
    output.append(buffer.data(), got);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return output;
}

std::vector<std::string> namesIn(const std::string& path) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace ombrelian::testing
