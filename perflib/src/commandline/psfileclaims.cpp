#include "psfileclaims.h"

#include <sys/stat.h>

namespace {

// Fills where the claim's file lies. False when path leads to no file that could be claimed.
bool locate(const psString& path, psFileClaims::Claim& claim) {
    const psString directory = path.getFileDir();
    struct stat file;
    bool usable = stat(path.c_str(), &file) == 0;
    if (usable) {
        usable = S_ISREG(file.st_mode);
    } else {
        claim.name = path.getFileName();
        usable = stat(directory.empty() ? "." : directory.c_str(), &file) == 0;
    }
    if (usable) {
        claim.device = file.st_dev;
        claim.node = file.st_ino;
    }
    return usable;
}

} // namespace

void psFileClaims::add(const psString& path, const psString& use, char key) {
    Claim claim = {use, key, 0, 0, "", false};
    if (locate(path, claim)) {
        m_claims.append(claim);
    }
}

void psFileClaims::addOpen(int file, const psString& use) {
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        m_claims.append({use, 0, status.st_dev, status.st_ino, "", false});
    }
}

const psFileClaims::Claim* psFileClaims::find(const psString& path) const {
    return const_cast<psFileClaims*>(this)->find(path);
}

psFileClaims::Claim* psFileClaims::find(const psString& path) {
    Claim wanted = {"", 0, 0, 0, "", false};
    if (!locate(path, wanted)) {
        return nullptr;
    }
    for (Claim& claim : m_claims) {
        if (claim.device == wanted.device && claim.node == wanted.node &&
            claim.name == wanted.name) {
            return &claim;
        }
    }
    return nullptr;
}

psString psClaimedText(const psString& path, const psFileClaims::Claim& claim) {
    const psString key = claim.key ? " (-" + psString(claim.key) + " key)" : psString();
    return "ignored: file " + path + " is already used for " + claim.use + key;
}
