#pragma once

#include "platform/files/FileWriting.h"

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/stat.h>

namespace lamina {

/// A temporary file in the folder of its target, gone with this object unless it has taken the target's place. Each
/// step does nothing once one has failed; `error` keeps the number of the first failure, 0 while there is none.
class UnfinishedFile {
public:
    /// `mode`: its permissions, less those that the process takes from all its files.
    explicit UnfinishedFile(const std::filesystem::path& target, mode_t mode = 0666);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Takes on the permissions, and where we may the owner, of another file.
    void take(const struct stat& status);
    /// Writes everything and closes the file.
    void write(std::span<const std::uint8_t> bytes, Durability durability = Durability::Ordinary);
    /// Writes a piece behind those before; `close` ends the file.
    void append(std::span<const std::uint8_t> bytes);
    /// A path that leads to the open file by its descriptor, for a library that opens files by their names: no name of
    /// the file system is given away, and none can be put in its place meanwhile.
    std::string descriptorPath() const;
    /// Closes the file after it was written in pieces, or by another by that path.
    void close();
    /// Takes the target's place, whatever stands there.
    void replace(const std::filesystem::path& target);
    /// Takes a name that is free: true when it has. When anything bears it, a link that leads nowhere included, nothing
    /// has failed, and another name may be tried.
    bool claim(const std::filesystem::path& target);
    int error() const { return m_error; }

    /// Removes those that exist at the moment; safe in a signal handler.
    static void removeAll();

private:
    std::string m_path;
    int m_descriptor = -1;
    int m_place = -1;
    int m_error = 0;
    bool m_exists = false;
};

/// Growing past the process's limit for files raises a signal that ends it; held back for as long as this object lives,
/// in its thread, the write fails in the ordinary way.
class FileSizeSignalBlocker {
public:
    FileSizeSignalBlocker();
    ~FileSizeSignalBlocker();
    FileSizeSignalBlocker(const FileSizeSignalBlocker&) = delete;
    FileSizeSignalBlocker& operator=(const FileSizeSignalBlocker&) = delete;

private:
    sigset_t m_signal;
    sigset_t m_before;
};

/// Writes everything; the error's number, or 0. Growing past the process's limit for files is an error like others and
/// raises no signal.
int writeAll(int descriptor, std::span<const std::uint8_t> bytes);
/// The same, and closes the descriptor.
int writeAndClose(int descriptor, std::span<const std::uint8_t> bytes, Durability durability = Durability::Ordinary);

} // namespace lamina
