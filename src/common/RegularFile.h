// Opening files for reading without ever blocking on one that is not a plain file: a named
// pipe would wait for a writer, a device has no end, a socket cannot be opened at all. Every
// reader of documents and settings goes through here.
#pragma once

#include <string>

namespace zv {

// What `path` is when it is not a plain file ("a named pipe (FIFO)", "a character device",
// "a block device", "a socket", "a folder"), or empty for a plain file or a missing one.
// Asks stat only (symbolic links followed), so it never blocks.
std::string NotRegularFileKind(const std::string& path);

// The message for a file of that kind (from NotRegularFileKind): what it is, and that only
// plain files open.
std::string NotRegularFileMessage(const std::string& kind);

// Opens a plain file for reading (close-on-exec, blocking reads) and returns its descriptor;
// on failure returns -1 with `error` set: the system's reason, or NotRegularFileMessage for
// anything but a plain file. The check is made on the opened file, so a file swapped for a
// pipe after a look with NotRegularFileKind is still refused at once.
int OpenRegularFile(const std::string& path, std::string& error);

} // namespace zv
