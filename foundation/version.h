#pragma once

// The program's one version number: the logo's text, the version resource, quill-tool --version,
// the package names and the update check all read it from here.
#define QUILL_VERSION_MAJOR 1
#define QUILL_VERSION_MINOR 27
#define QUILL_VERSION_TEXT "1.27"
