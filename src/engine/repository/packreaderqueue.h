#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include <QString>
#include <QVector>

#include "repository/packresult.h"

namespace NVB::Engine {

class PackReader;

// Reads and decodes a restore's chunks on a thread of its own, ahead of the
// writer and in the writer's order, so that reading, deciphering,
// decompressing and checking overlap with making the files. Neighbouring
// chunks of one pack are read with one request. What is ready but not yet
// taken is bounded by a byte budget, so memory does not grow with the tree.
class PackReaderQueue
{
public:
    struct Item
    {
        QString pack; // empty: the chunk is in no pack
        PackEntry entry;
    };

    // `reader` must outlive the queue. Reading starts at once.
    PackReaderQueue(const PackReader* reader, QVector<Item> items, qint64 budget = 32 * 1024 * 1024);
    // Ends the reading at its next chunk.
    ~PackReaderQueue();
    PackReaderQueue(const PackReaderQueue&) = delete;
    PackReaderQueue& operator=(const PackReaderQueue&) = delete;

    // The next item's data, in the order given; blocks until it is read. An
    // item in no pack answers an error.
    ChunkData next();

private:
    void produce();
    void push(ChunkData chunk);

    const PackReader* m_reader;
    QVector<Item> m_items;
    qint64 m_budget;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<ChunkData> m_ready;
    qint64 m_readyBytes = 0;
    int m_taken = 0;
    bool m_cancel = false;
    std::thread m_thread;
};

} // namespace NVB::Engine
