#include "sftpdirectoryreader.h"

#include <algorithm>

#include <libssh/libssh.h>
#include <libssh/sftp.h>

namespace NVL::Cloud {

namespace {

// The only protocol version whose replies are parsed here; any other falls
// back to libssh's one-at-a-time readdir.
constexpr int ParsedVersion = 3;
// OpenSSH caps a message at 256 KiB; a larger length is a broken stream.
constexpr uint32_t MaxReply = 1024 * 1024;
// The file type bits of the permissions word, as the protocol sends them.
constexpr uint32_t TypeMask = 0170000;
constexpr uint32_t TypeFolder = 0040000;
// libssh asks for this many names at most per call on the fallback path.
constexpr int FallbackBatch = 100;

void putU32(char* out, uint32_t value)
{
    out[0] = char(value >> 24);
    out[1] = char(value >> 16);
    out[2] = char(value >> 8);
    out[3] = char(value);
}

// Reads the big-endian fields of one reply; every read checks the bounds.
class Cursor
{
public:
    explicit Cursor(const QByteArray& data)
        : m_data(reinterpret_cast<const unsigned char*>(data.constData()))
        , m_left(uint32_t(data.size()))
    { }

    bool ok() const { return m_ok; }

    uint8_t u8()
    {
        if (!take(1))
            return 0;
        return m_data[-1];
    }

    uint32_t u32()
    {
        if (!take(4))
            return 0;
        const unsigned char* p = m_data - 4;
        return (uint32_t(p[0]) << 24) | (uint32_t(p[1]) << 16) | (uint32_t(p[2]) << 8) | uint32_t(p[3]);
    }

    quint64 u64()
    {
        const quint64 high = u32();
        return (high << 32) | u32();
    }

    QByteArray string()
    {
        const uint32_t size = u32();
        if (!take(size))
            return QByteArray();
        return QByteArray(reinterpret_cast<const char*>(m_data - size), int(size));
    }

    void skipString() { take(u32()); }

private:
    bool take(uint32_t size)
    {
        if (!m_ok || size > m_left) {
            m_ok = false;
            return false;
        }
        m_data += size;
        m_left -= size;
        return true;
    }

    const unsigned char* m_data;
    uint32_t m_left;
    bool m_ok = true;
};

} // namespace

SftpDirectoryReader::SftpDirectoryReader(sftp_session_struct* sftp, sftp_dir_struct* dir)
    : m_sftp(sftp)
    , m_dir(dir)
{
    // length, type, id and the handle as an SSH string; only the id changes.
    const uint32_t handleSize = uint32_t(ssh_string_len(dir->handle));
    m_request.resize(int(4 + 1 + 4 + 4 + handleSize));
    char* out = m_request.data();
    putU32(out, uint32_t(m_request.size() - 4));
    out[4] = char(SSH_FXP_READDIR);
    putU32(out + 9, handleSize);
    std::copy_n(static_cast<const char*>(ssh_string_data(dir->handle)), handleSize, out + 13);
}

bool SftpDirectoryReader::read(QVector<Entry>* entries)
{
    if (m_failed || (m_end && m_pending.empty()))
        return false;
    if (m_sftp->version != ParsedVersion)
        return readWithLibssh(entries);
    while (!m_end && m_pending.size() < size_t(InFlight)) {
        if (!send()) {
            fail();
            return false;
        }
    }
    if (!receive(entries))
        return false;
    return !(m_end && m_pending.empty());
}

bool SftpDirectoryReader::readWithLibssh(QVector<Entry>* entries)
{
    for (int i = 0; i < FallbackBatch; ++i) {
        sftp_attributes attributes = sftp_readdir(m_sftp, m_dir);
        if (!attributes) {
            if (sftp_dir_eof(m_dir))
                m_end = true;
            else
                fail(sftp_get_error(m_sftp));
            return false;
        }
        Entry entry;
        entry.name = QByteArray(attributes->name);
        entry.folder = attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
        entry.size = attributes->size;
        entry.modified = qint64(attributes->mtime64 ? attributes->mtime64 : attributes->mtime);
        entries->append(entry);
        sftp_attributes_free(attributes);
    }
    return true;
}

bool SftpDirectoryReader::send()
{
    const uint32_t id = ++m_sftp->id_counter;
    putU32(m_request.data() + 5, id);
    if (ssh_channel_write(m_sftp->channel, m_request.constData(), uint32_t(m_request.size())) != m_request.size())
        return false;
    m_pending.push_back(id);
    return true;
}

bool SftpDirectoryReader::readExactly(char* data, uint32_t size)
{
    while (size > 0) {
        const int got = ssh_channel_read(m_sftp->channel, data, size, 0);
        if (got <= 0)
            return false;
        data += got;
        size -= uint32_t(got);
    }
    return true;
}

bool SftpDirectoryReader::receive(QVector<Entry>* entries)
{
    char length[4];
    if (!readExactly(length, sizeof(length))) {
        fail();
        return false;
    }
    const uint32_t size = Cursor(QByteArray::fromRawData(length, sizeof(length))).u32();
    if (size < 5 || size > MaxReply) {
        fail();
        return false;
    }
    m_reply.resize(int(size));
    if (!readExactly(m_reply.data(), size)) {
        fail();
        return false;
    }
    Cursor reply(m_reply);
    const uint8_t type = reply.u8();
    const auto pending = std::find(m_pending.begin(), m_pending.end(), reply.u32());
    if (pending == m_pending.end()) {
        fail();
        return false;
    }
    m_pending.erase(pending);

    if (type == SSH_FXP_STATUS) {
        const uint32_t code = reply.u32();
        m_end = true;
        if (!reply.ok() || code != SSH_FX_EOF) {
            fail(reply.ok() ? int(code) : -1);
            return false;
        }
        return true;
    }
    if (type != SSH_FXP_NAME) {
        fail();
        return false;
    }
    const uint32_t count = reply.u32();
    for (uint32_t i = 0; i < count && reply.ok(); ++i) {
        Entry entry;
        entry.name = reply.string();
        reply.skipString(); // the "ls -l" line
        const uint32_t flags = reply.u32();
        if (flags & SSH_FILEXFER_ATTR_SIZE)
            entry.size = reply.u64();
        if (flags & SSH_FILEXFER_ATTR_UIDGID) {
            reply.u32();
            reply.u32();
        }
        if (flags & SSH_FILEXFER_ATTR_PERMISSIONS)
            entry.folder = (reply.u32() & TypeMask) == TypeFolder;
        if (flags & SSH_FILEXFER_ATTR_ACMODTIME) {
            reply.u32();
            entry.modified = reply.u32();
        }
        if (flags & SSH_FILEXFER_ATTR_EXTENDED) {
            const uint32_t extended = reply.u32();
            for (uint32_t e = 0; e < extended && reply.ok(); ++e) {
                reply.skipString();
                reply.skipString();
            }
        }
        if (reply.ok())
            entries->append(entry);
    }
    if (!reply.ok()) {
        fail();
        return false;
    }
    return true;
}

void SftpDirectoryReader::fail(int status)
{
    m_failed = true;
    m_end = true;
    m_status = status;
    // A refusal leaves the connection sound: the answers still owed are read
    // and dropped, so that libssh's next request meets its own reply.
    if (status < 0)
        return;
    while (!m_pending.empty()) {
        char length[4];
        if (!readExactly(length, sizeof(length)))
            return;
        const uint32_t size = Cursor(QByteArray::fromRawData(length, sizeof(length))).u32();
        if (size > MaxReply)
            return;
        m_reply.resize(int(size));
        if (!readExactly(m_reply.data(), size))
            return;
        m_pending.pop_front();
    }
}

} // namespace NVL::Cloud
