#pragma once

#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/files/WrittenFolders_p.h"

#include <cstdint>
#include <span>
#include <string>
#include <sys/stat.h>

namespace lamina {

/// A temporary file in the folder of its target, gone with this object unless it has taken the target's place. Each
/// step does nothing once one has failed; `error` keeps the number of the first failure, 0 while there is none. As long
/// as the object lives the file is locked (flock): whoever sweeps the folder leaves it alone.
class UnfinishedFile {
public:
    /// `mode`: its permissions, less those that the process takes from all its files. With `keptFor`, the target's
    /// name, it gets one after it that says what it is, and which neither a signal nor a sweep removes.
    explicit UnfinishedFile(OpenFolder folder, mode_t mode = 0666, std::string keptFor = {});
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Takes on the attributes of another open file; to be called before anything is written, on one of mode 0600.
    void take(const FileDescriptor& former);
    /// Writes a piece behind those before.
    void append(std::span<const std::uint8_t> bytes);
    /// A path that leads to the open file by its descriptor, for a library that opens files by their names: no name of
    /// the file system is given away, and none can be put in its place meanwhile.
    std::string descriptorPath() const;
    /// Ends the file after it was written in pieces, or by another by that path; `OnDevice` its contents are there
    /// afterwards.
    void finish(Durability durability = Durability::Ordinary);
    /// Takes a name of its folder, whatever bears it; `OnDevice` that is on the device afterwards too.
    void replace(const std::string& name, Durability durability = Durability::Ordinary);
    /// Takes a name that is free: true when it has. When anything bears it, a link that leads nowhere included, nothing
    /// has failed, and another name may be tried.
    bool claim(const std::string& name);
    /// It stays where it is, unfinished or not.
    void keep() { m_exists = false; }
    int error() const { return m_error; }
    const std::string& name() const { return m_name; } ///< in its folder
    const FileDescriptor& file() const { return m_file; }

private:
    void make(mode_t mode);

    bool enterName();

    const OpenFolder m_folder;
    const std::string m_keptFor;
    FileDescriptor m_file{-1};
    std::string m_name;
    int m_place = -1;
    int m_error = 0;
    bool m_exists = false;
};

/// Signals wait for as long as this object lives, in its thread.
class SignalBlocker {
public:
    SignalBlocker();
    ~SignalBlocker();
    SignalBlocker(const SignalBlocker&) = delete;
    SignalBlocker& operator=(const SignalBlocker&) = delete;

private:
    sigset_t m_before;
};

/// Writes everything; the error's number, or 0. Growing past the process's limit for files is an error like others and
/// raises no signal.
int writeAll(int descriptor, std::span<const std::uint8_t> bytes);
/// What a file system tells only when a file is closed: that it is full, for one. The descriptor stays open.
int closingError(int descriptor);

} // namespace lamina
