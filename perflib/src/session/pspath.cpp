// Where the session's files lie.

#include "ps.h"
#include "psprogram.h"
#include "pssettings.h"

constinit psString& psSession::m_exePath = g_settings.programPath;
constinit psString& psSession::m_inDir = g_settings.inDir;
constinit psString& psSession::m_outDir = g_settings.outDir;
constinit psString& psSession::m_defName = g_settings.defName;

bool psSession::isAbsolutePath(const psString& name) {
    return psIsAbsolutePath(name);
}

psString psSession::genDirName(const psString& dir) {
    if (dir.empty()) {
        return psProgramDir();
    }
    const char last = dir[dir.length() - 1];
    const psString ended = last == '/' || last == '\\' ? dir : dir + "/";
    return isAbsolutePath(dir) ? ended : psProgramDir() + ended;
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
    return psPathIn(name, dir);
}

psString psSession::getInPath(const psString& name) {
    return psInPath(name);
}

psString psSession::getOutPath(const psString& name) {
    return getDirPath(name, m_outDir);
}
