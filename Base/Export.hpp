#pragma once

/// Marks what the shared library shows to its host. Everything else is hidden from its symbol table.
#define REMOTE_CODING_EXPORT __attribute__((visibility("default")))
