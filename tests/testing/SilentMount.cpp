#include "tests/testing/SilentMount.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <new>
#include <vector>

namespace ombrelian::testing {
namespace {

constexpr unsigned kLongestLife = 60;  // seconds after which the server ends and releases all calls

struct Node {
  std::uint64_t parent;
  std::string name;
  bool isFolder;
  bool isGone = false;
};

/// The objects by their numbers; files that are made come behind them.
std::vector<Node> nodes = {{0, "", false},   {0, "", true},    {1, "a", true},   {2, "a1", false},
                           {2, "a2", false}, {1, "b", true},   {5, "b1", false}, {5, "c", true},
                           {7, "c1", false}, {1, "top", false}};

std::uint64_t find(std::uint64_t parent, const char* name) {
  for (std::uint64_t i = 1; i < nodes.size(); ++i) {
    const Node& node = nodes[i];
    if (node.parent == parent && !node.isGone && node.name == name) return i;
  }
  return 0;
}

fuse_attr attributes(std::uint64_t id) {
  fuse_attr attr = {};
  attr.ino = id;
  attr.mode = nodes[id].isFolder ? S_IFDIR | 0755 : S_IFREG | 0644;
  attr.nlink = nodes[id].isFolder ? 2 : 1;
  attr.size = nodes[id].isFolder ? 0 : 100;
  attr.blocks = nodes[id].isFolder ? 0 : 8;
  attr.blksize = 4096;
  return attr;
}

struct Request {
  const fuse_in_header& header;
  const char* body;
};

/// One connection to the kernel.
class Server {
 public:
  explicit Server(int device) : device_(device) {}

  void handle(const std::vector<char>& bytes) {
    const Request request = {*reinterpret_cast<const fuse_in_header*>(bytes.data()),
                             bytes.data() + sizeof(fuse_in_header)};
    switch (request.header.opcode) {
      case FUSE_FORGET:
      case FUSE_BATCH_FORGET:
      case FUSE_INTERRUPT:
        return;
      case FUSE_INIT:
        return init(request);
      case FUSE_LOOKUP:
        return lookUp(request);
      case FUSE_GETATTR: {
        fuse_attr_out out = {};
        out.attr = attributes(request.header.nodeid);
        return reply(request, out);
      }
      case FUSE_OPENDIR:
        return reply(request, fuse_open_out{});
      case FUSE_READDIR:
        return list(request);
      case FUSE_STATFS:
        return reply(request, fuse_statfs_out{});
      case FUSE_UNLINK:
      case FUSE_RMDIR:
        nodes[find(request.header.nodeid, request.body)].isGone = true;
        return send(request, 0, nullptr, 0);
      case FUSE_CREATE:
        return create(request);
      case FUSE_OPEN:
        return reply(request, fuse_open_out{});
      case FUSE_WRITE: {
        const auto& in = *reinterpret_cast<const fuse_write_in*>(request.body);
        return reply(request, fuse_write_out{in.size, 0});
      }
      case FUSE_RENAME:
        return rename(request, request.body + sizeof(fuse_rename_in));
      case FUSE_FLUSH:
      case FUSE_FSYNC:
      case FUSE_RELEASE:
      case FUSE_RELEASEDIR:
        return send(request, 0, nullptr, 0);
      default:
        return send(request, ENOSYS, nullptr, 0);
    }
  }

  /// The object that a request is about.
  static std::uint64_t objectOf(const std::vector<char>& bytes) {
    const auto& header = *reinterpret_cast<const fuse_in_header*>(bytes.data());
    const bool isByName = header.opcode == FUSE_LOOKUP || header.opcode == FUSE_UNLINK;
    return isByName ? find(header.nodeid, bytes.data() + sizeof header) : header.nodeid;
  }

 private:
  void send(const Request& request, int error, const void* data, std::size_t size) {
    std::vector<char> out(sizeof(fuse_out_header) + size);
    const fuse_out_header header = {std::uint32_t(out.size()), -error, request.header.unique};
    std::memcpy(out.data(), &header, sizeof header);
    if (size > 0) std::memcpy(out.data() + sizeof header, data, size);
    // The caller may be gone meanwhile.
    if (write(device_, out.data(), out.size()) < 0) return;
  }

  template <class Out>
  void reply(const Request& request, const Out& out) {
    send(request, 0, &out, sizeof out);
  }

  void init(const Request& request) {
    fuse_init_out out = {};
    out.major = FUSE_KERNEL_VERSION;
    out.minor = FUSE_KERNEL_MINOR_VERSION;
    out.max_write = 4096;
    out.max_background = 64;
    reply(request, out);
  }

  void lookUp(const Request& request) {
    fuse_entry_out out = {};
    out.nodeid = find(request.header.nodeid, request.body);
    if (out.nodeid == 0) return send(request, ENOENT, nullptr, 0);
    out.attr = attributes(out.nodeid);
    reply(request, out);
  }

  void create(const Request& request) {
    struct {
      fuse_entry_out entry = {};
      fuse_open_out file = {};
    } out;
    out.entry.nodeid = nodes.size();
    nodes.push_back({request.header.nodeid, request.body + sizeof(fuse_create_in), false});
    out.entry.attr = attributes(out.entry.nodeid);
    reply(request, out);
  }

  /// `names` are the old and the new name, which are in one folder.
  void rename(const Request& request, const char* names) {
    Node& node = nodes[find(request.header.nodeid, names)];
    const std::string name = names + node.name.size() + 1;
    if (const std::uint64_t older = find(request.header.nodeid, name.c_str()); older != 0)
      nodes[older].isGone = true;
    node.name = name;
    send(request, 0, nullptr, 0);
  }

  /// Lists a folder at once; the second request gets nothing.
  void list(const Request& request) {
    std::vector<char> out;
    const auto& in = *reinterpret_cast<const fuse_read_in*>(request.body);
    for (std::uint64_t i = 1; in.offset == 0 && i < nodes.size(); ++i) {
      const Node& node = nodes[i];
      if (node.parent != request.header.nodeid || node.isGone) continue;
      const std::size_t length = node.name.size();
      const std::size_t at = out.size();
      out.resize(at + FUSE_DIRENT_ALIGN(FUSE_NAME_OFFSET + length));
      auto& entry = *reinterpret_cast<fuse_dirent*>(out.data() + at);
      entry.ino = i;
      entry.off = i;
      entry.namelen = std::uint32_t(length);
      entry.type = node.isFolder ? DT_DIR : DT_REG;
      std::memcpy(entry.name, node.name.data(), length);
    }
    send(request, 0, out.data(), out.size());
  }

  const int device_;
};

}  // namespace

SilentMount::SilentMount(const std::string& path) : path_(path) {
  const int device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
  const std::string options =
      "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
  if (device < 0 || mount("host:/export", path.c_str(), "fuse.sshfs", 0, options.c_str()) != 0)
    return;
  void* const memory =
      mmap(nullptr, sizeof(Order), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  order_ = new (memory) Order;
  server_ = fork();
  if (server_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    alarm(kLongestLife);
    serve(device, *order_);
    _exit(0);
  }
  close(device);
}

SilentMount::~SilentMount() {
  if (!isMounted()) return;
  // The end of the server closes the last descriptor of the device, which aborts all calls.
  kill(server_, SIGKILL);
  waitpid(server_, nullptr, 0);
  umount2(path_.c_str(), MNT_DETACH);
}

void SilentMount::silence(std::uint32_t request, Object object) {
  order_->object = object;
  order_->request = request;
}

void SilentMount::answer() { order_->request = 0; }

void SilentMount::serve(int device, const Order& order) {
  Server server(device);
  std::vector<std::vector<char>> waiting;
  std::vector<char> buffer(FUSE_MIN_READ_BUFFER + 64 * 1024);
  for (;;) {
    pollfd ready = {device, POLLIN, 0};
    const int count = poll(&ready, 1, 10);
    if (order.request == 0) {
      for (const std::vector<char>& request : waiting)
        server.handle(request);
      waiting.clear();
    }
    if (count <= 0) continue;
    const ssize_t size = read(device, buffer.data(), buffer.size());
    if (size < 0 && errno == ENODEV) return;  // it was unmounted
    if (size < ssize_t(sizeof(fuse_in_header))) continue;
    std::vector<char> request(buffer.begin(), buffer.begin() + size);
    const auto opcode = reinterpret_cast<const fuse_in_header*>(request.data())->opcode;
    const std::uint64_t object = order.object;
    const bool isSilent =
        opcode == order.request && (object == kAny || object == Server::objectOf(request));
    if (isSilent) {
      waiting.push_back(std::move(request));
    } else {
      server.handle(request);
    }
  }
}

}  // namespace ombrelian::testing
