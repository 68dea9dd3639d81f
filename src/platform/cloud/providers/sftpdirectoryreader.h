#pragma once

#include <cstdint>
#include <deque>

#include <QByteArray>
#include <QVector>

struct sftp_dir_struct;
struct sftp_session_struct;

namespace NVL::Cloud {

// Reads an open SFTP folder with several READDIR requests in flight.
// libssh asks for the next batch of names only once the previous one has
// arrived, so a large folder costs one full round trip (and, on a busy
// machine, two process wake-ups) per hundred names; keeping requests queued
// at the server lets it answer back to back. The requests go out on the SFTP
// session's own channel between libssh's calls, which never leave a reply
// unread, and every reply is read before read() ends, so libssh finds the
// channel as it left it.
class SftpDirectoryReader
{
public:
    struct Entry
    {
        QByteArray name;
        bool folder = false;
        quint64 size = 0;
        qint64 modified = 0;
    };

    static constexpr int InFlight = 16;

    SftpDirectoryReader(sftp_session_struct* sftp, sftp_dir_struct* dir);

    // Appends the names of the next reply. False once the folder has been
    // read to its end or the listing broke off (failed()).
    bool read(QVector<Entry>* entries);
    bool failed() const { return m_failed; }
    // The server's status code when it refused a request, else -1.
    int status() const { return m_status; }

private:
    bool readWithLibssh(QVector<Entry>* entries);
    bool send();
    bool receive(QVector<Entry>* entries);
    bool readExactly(char* data, uint32_t size);
    void fail(int status = -1);

    sftp_session_struct* m_sftp;
    sftp_dir_struct* m_dir;
    QByteArray m_request;
    QByteArray m_reply;
    std::deque<uint32_t> m_pending;
    bool m_end = false;
    bool m_failed = false;
    int m_status = -1;
};

} // namespace NVL::Cloud
