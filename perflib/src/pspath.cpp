// Where the session's files lie.

#include "ps.h"
#include "psinit.h"

PS_INIT_FIRST psString psSession::m_exePath;
PS_INIT_FIRST psString psSession::m_inDir;
PS_INIT_FIRST psString psSession::m_outDir;
PS_INIT_FIRST psString psSession::m_defName;

bool psSession::isAbsolutePath(const psString& name) {
    return name.startsWith("/") || name.startsWith("\\") || (name.length() >= 2 && name[1] == ':');
}

psString psSession::genDirName(const psString& dir) {
    if (dir.empty()) {
        return m_exePath.getFileDir();
    }
    const char last = dir[dir.length() - 1];
    const psString ended = last == '/' || last == '\\' ? dir : dir + "/";
    return isAbsolutePath(dir) ? ended : m_exePath.getFileDir() + ended;
}

void psSession::setInDir(const psString& dir) {
    m_inDir = genDirName(dir);
}

void psSession::setOutDir(const psString& dir) {
    m_outDir = genDirName(dir);
}

void psSession::setDefName(const psString& name) {
    m_defName = name.empty() ? m_exePath.getFileTitle() : name;
}

psString psSession::genPathName(const psString& dir, const psString& name, const psString& ext) {
    if (isAbsolutePath(name)) {
        return name;
    }
    psString file = name.empty() ? m_defName + ext : name;
    if (!file.contains(".")) {
        file += ext;
    }
    return dir + file;
}

psString psSession::genInPath(const psString& name, const psString& ext) {
    return genPathName(m_inDir, name, ext);
}

psString psSession::genOutPath(const psString& name, const psString& ext) {
    return genPathName(m_outDir, name, ext);
}

psString psSession::getDirPath(const psString& name, const psString& dir) {
    if (isAbsolutePath(name)) {
        return name;
    }
    if (dir.empty()) {
        return m_exePath.getFileDir() + name;
    }
    return name.startsWith(dir) ? name : dir + name;
}

psString psSession::getInPath(const psString& name) {
    return getDirPath(name, m_inDir);
}

psString psSession::getOutPath(const psString& name) {
    return getDirPath(name, m_outDir);
}
