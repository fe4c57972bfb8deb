// Stands between a program and the disk, by LD_PRELOAD: makes one call fail, kills the process right after
// one, or writes down what goes to the disk. Only calls on files below FAULTS_UNDER count.
//
//   FAULTS_AT=n     the n-th call, from 1
//   FAULTS_HOW=     an error name (EIO, ENOSPC, EACCES, EINTR): the call fails without being done;
//                   short: a write does half; full: it and all writing after it fails with ENOSPC;
//                   kill: the process is killed when the call has been done
//   FAULTS_LOG=     file that each call is written to: a line, and behind a write its bytes

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr int most_files = 1024;
char* paths[most_files]; // of the open files that count, by descriptor

struct Settings {
    const char* under = std::getenv("FAULTS_UNDER");
    long at = std::getenv("FAULTS_AT") ? std::atol(std::getenv("FAULTS_AT")) : 0;
    const char* how = std::getenv("FAULTS_HOW") ? std::getenv("FAULTS_HOW") : "";
    int log = -1;

    Settings() {
        if (const char* path = std::getenv("FAULTS_LOG"))
            log =
                static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_APPEND, 0600));
    }
};

const Settings& settings() {
    static const Settings read;
    return read;
}

long calls = 0;

bool counts(const char* path) {
    const char* under = settings().under;
    return under && path && std::strncmp(path, under, std::strlen(under)) == 0;
}

const char* path_of(int file) { return file >= 0 && file < most_files ? paths[file] : nullptr; }

void note(const char* kind, const char* path, const char* other, long long offset, const void* bytes,
          long long size) {
    if (settings().log < 0) return;
    char line[9000];
    const int length =
        std::snprintf(line, sizeof line, "%s\t%s\t%s\t%lld\t%lld\n", kind, path, other, offset, size);
    ::syscall(SYS_write, settings().log, line, length);
    if (bytes) ::syscall(SYS_write, settings().log, bytes, size);
}

enum class Verdict { done, fail, halve, kill_after };

bool writes(const char* kind) {
    return std::strcmp(kind, "write") == 0 || std::strcmp(kind, "reserve") == 0 ||
           std::strcmp(kind, "open") == 0;
}

/// Counts a call. @return what is to become of it, for fail with errno set
Verdict judge(const char* kind) {
    ++calls;
    note("call", kind, "", 0, nullptr, 0);
    const Settings& s = settings();
    if (std::strcmp(s.how, "full") == 0 && s.at > 0 && calls >= s.at && writes(kind)) {
        errno = ENOSPC;
        return Verdict::fail;
    }
    if (calls != s.at) return Verdict::done;
    if (std::strcmp(s.how, "kill") == 0) return Verdict::kill_after;
    if (std::strcmp(s.how, "short") == 0) return Verdict::halve;
    errno = std::strcmp(s.how, "ENOSPC") == 0   ? ENOSPC
            : std::strcmp(s.how, "EACCES") == 0 ? EACCES
            : std::strcmp(s.how, "EINTR") == 0  ? EINTR
                                                : EIO;
    return std::strcmp(s.how, "full") == 0 ? Verdict::done : Verdict::fail;
}

void after(Verdict verdict) {
    if (verdict == Verdict::kill_after) ::kill(::getpid(), SIGKILL);
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

int do_open(int folder, const char* path, int flags, mode_t mode) {
    const bool counted = counts(path);
    const bool changes = (flags & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) != 0;
    const Verdict verdict = counted ? judge(changes ? "open" : "look") : Verdict::done;
    if (verdict == Verdict::fail) return -1;
    struct stat status {};
    const bool was_there = counted && ::stat(path, &status) == 0;
    const int file = static_cast<int>(::syscall(SYS_openat, folder, path, flags | O_LARGEFILE, mode));
    if (file >= 0 && file < most_files) {
        std::free(paths[file]);
        paths[file] = counted ? ::strdup(path) : nullptr;
        if (counted) {
            note(!was_there && (flags & O_CREAT) ? "create" : "open", path, "", 0, nullptr, 0);
            if (was_there && (flags & O_TRUNC)) note("truncate", path, "", 0, nullptr, 0);
        }
    }
    after(verdict);
    return file;
}

template <typename Call>
int on_file(const char* kind, int file, long long number, Call call) {
    const char* path = path_of(file);
    const Verdict verdict = path ? judge(kind) : Verdict::done;
    if (verdict == Verdict::fail) return -1;
    const int result = call();
    if (path && result == 0) note(kind, path, "", number, nullptr, 0);
    after(verdict);
    return result;
}

template <typename Call>
int on_name(const char* kind, const char* path, const char* other, Call call) {
    const bool counted = counts(path) || counts(other);
    const Verdict verdict = counted ? judge(kind) : Verdict::done;
    if (verdict == Verdict::fail) return -1;
    const int result = call();
    if (counted && result == 0) note(kind, path, other ? other : "", 0, nullptr, 0);
    after(verdict);
    return result;
}

template <typename Call>
ssize_t on_write(int file, const void* bytes, size_t size, long long offset, Call call) {
    const char* path = path_of(file);
    const Verdict verdict = path ? judge("write") : Verdict::done;
    if (verdict == Verdict::fail) return -1;
    if (path && offset < 0) offset = ::lseek(file, 0, SEEK_CUR);
    const ssize_t done = call(verdict == Verdict::halve && size > 1 ? size / 2 : size);
    if (path && done > 0) note("write", path, "", offset, bytes, done);
    after(verdict);
    return done;
}

mode_t mode_of(int flags, va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_of(flags, arguments);
    va_end(arguments);
    return do_open(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_of(flags, arguments);
    va_end(arguments);
    return do_open(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_of(flags, arguments);
    va_end(arguments);
    return do_open(folder, path, flags, mode);
}

int close(int file) {
    const char* path = path_of(file);
    const Verdict verdict = path ? judge("close") : Verdict::done;
    const int error = errno;
    const int result = static_cast<int>(::syscall(SYS_close, file)); // it is closed, whatever it says
    if (path) {
        std::free(paths[file]);
        paths[file] = nullptr;
    }
    after(verdict);
    if (verdict != Verdict::fail) return result;
    errno = error;
    return -1;
}

ssize_t write(int file, const void* bytes, size_t size) {
    if (file == STDOUT_FILENO) note("say", "", "", 0, bytes, static_cast<long long>(size));
    return on_write(file, bytes, size, -1, [&](size_t part) {
        return static_cast<ssize_t>(::syscall(SYS_write, file, bytes, part));
    });
}

ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset) {
    return on_write(file, bytes, size, offset, [&](size_t part) {
        return static_cast<ssize_t>(::syscall(SYS_pwrite64, file, bytes, part, offset));
    });
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
    return pwrite64(file, bytes, size, offset);
}

/// Through memory, where it is counted as a write.
ssize_t copy_file_range(int from, off64_t* from_at, int to, off64_t* to_at, size_t size, unsigned flags) {
    if (!path_of(to)) return ::syscall(SYS_copy_file_range, from, from_at, to, to_at, size, flags);
    errno = EXDEV;
    return -1;
}

int fallocate64(int file, int mode, off64_t offset, off64_t size) {
    return on_file("reserve", file, size,
                   [&] { return static_cast<int>(::syscall(SYS_fallocate, file, mode, offset, size)); });
}
int fallocate(int file, int mode, off_t offset, off_t size) { return fallocate64(file, mode, offset, size); }

int ftruncate64(int file, off64_t size) {
    return on_file("truncate", file, size,
                   [&] { return static_cast<int>(::syscall(SYS_ftruncate, file, size)); });
}
int ftruncate(int file, off_t size) { return ftruncate64(file, size); }

int fsync(int file) {
    return on_file("sync", file, 0, [&] { return static_cast<int>(::syscall(SYS_fsync, file)); });
}
int fdatasync(int file) {
    return on_file("sync", file, 0, [&] { return static_cast<int>(::syscall(SYS_fdatasync, file)); });
}

int rename(const char* from, const char* to) {
    return on_name("rename", from, to, [&] { return static_cast<int>(::syscall(SYS_rename, from, to)); });
}
int renameat2(int from_folder, const char* from, int to_folder, const char* to, unsigned flags) {
    return on_name("rename", from, to, [&] {
        return static_cast<int>(::syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
    });
}
int link(const char* from, const char* to) {
    return on_name("link", from, to, [&] { return static_cast<int>(::syscall(SYS_link, from, to)); });
}
int unlink(const char* path) {
    return on_name("unlink", path, nullptr, [&] { return static_cast<int>(::syscall(SYS_unlink, path)); });
}
int mkdir(const char* path, mode_t mode) {
    return on_name("mkdir", path, nullptr,
                   [&] { return static_cast<int>(::syscall(SYS_mkdir, path, mode)); });
}

} // extern "C"
