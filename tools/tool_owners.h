// Owner numbers of the folder tools' blocks: the archive writer, the style converter and the
// keyword replacer.
#pragma once

enum : int {
  kOwnerZipMembers = 7151,  // the archive's member records and names
  kOwnerZipPacked = 7152,   // one member's compressed bytes
  kOwnerZipInput = 7153,    // one member's bytes as read
  kOwnerZipList = 7154,     // the project archive's list of members and of skipped files
  kOwnerZipSummary = 7155,  // the message after the archive
  kOwnerStyleText = 7156,   // the source and its converted text
};
