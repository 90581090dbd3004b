#pragma once

// Temporary files that a killed run of the program left behind (an export, a reader
// package, a restore's safety backup): up to hundreds of megabytes that nobody sees.
class TemporaryLeftovers {
public:
    // Looks where the program writes: its data folder, the safety backups and the folders
    // it remembers for backups and exports. Returns how many files went.
    static int removeFromKnownFolders();
};
