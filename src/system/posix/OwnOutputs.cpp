#include "system/posix/OwnOutputs.h"

#include <algorithm>
#include <utility>

namespace kd::posix {

bool OwnOutputs::IsOpen(const FileIdentity& file) const noexcept {
    return std::find(m_open.begin(), m_open.end(), file) != m_open.end();
}

bool OwnOutputs::IsLetGo(const FileState& file) const noexcept {
    return std::find(m_letGo.begin(), m_letGo.end(), file) != m_letGo.end();
}

void OwnOutputs::Forget(const FileIdentity& file) noexcept {
    (void)std::erase_if(m_letGo, [&](const FileState& one) { return one.file == file; });
}

OwnOutput::OwnOutput(std::shared_ptr<OwnOutputs> all, const FileIdentity& file)
    : m_all(std::move(all)), m_file(file) {
    m_all->Forget(file);
    m_all->m_letGo.reserve(m_all->m_letGo.size() + m_all->m_open.size() + 1);  // no want of memory later
    m_all->m_open.push_back(file);
}

OwnOutput::~OwnOutput() {
    if (m_all) {
        (void)std::erase(m_all->m_open, m_file);
    }
}

void OwnOutput::LetGo(const FileState& left) noexcept {
    if (m_all) {
        (void)std::erase(m_all->m_open, m_file);
        m_all->m_letGo.push_back(left);
    }
    m_all.reset();
}

}  // namespace kd::posix
