// Compresses files of any size on all of the machine's cores.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

struct libdeflate_compressor;

namespace bxzip {

/// Turns files into deflate streams.
///
/// A file is cut into chunks, which are compressed side by side and joined into one stream, so memory does not
/// depend on the file's size: maxThreads threads need less than 70 MB. The cut depends on nothing but the
/// file's size, so the result does not depend on the machine.
///
/// Threads are started when the first file comes that has more than one chunk, as many as the system gives up
/// to the number wanted, and end with the object. Without any the caller's thread does the work.
/// Allocation failure throws std::bad_alloc; the object stays usable.
class Deflater {
public:
    using Sink = std::function<Status(const void* bytes, std::size_t size)>;

    struct Result {
        std::uint32_t crc = 0;
        std::uint64_t compressedSize = 0;
    };

    static constexpr std::size_t chunkSize = std::size_t{512} << 10;
    static constexpr unsigned maxThreads = 16;

    explicit Deflater(unsigned threads = std::thread::hardware_concurrency());
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    /// Compresses the first `size` bytes; it is a failure when there are fewer. The sink takes the stream in
    /// order, on the caller's thread.
    Status deflate(Source& source, std::uint64_t size, const Sink& sink, Result& result);

private:
    struct Compressor;
    struct Chunk;

    void startThreads();
    void work(Compressor& compressor);
    Chunk& chunkAt(std::uint64_t number) { return *chunks[number % chunks.size()]; }
    void submitNext();
    void waitFor(const Chunk& chunk);
    Status deflateInParallel(Source& source, std::uint64_t size, const Sink& sink, Result& result);

    unsigned threadCount;
    std::unique_ptr<Compressor> ownCompressor;
    std::unique_ptr<Chunk> ownChunk;

    std::vector<std::unique_ptr<Compressor>> compressors;
    std::vector<std::unique_ptr<Chunk>> chunks;
    std::vector<std::thread> threads;

    std::mutex mutex;
    std::condition_variable workArrived;
    std::condition_variable workDone;
    std::uint64_t submitted = 0; ///< chunks of the present file given to the threads
    std::uint64_t started = 0;   ///< those of them that a thread has taken
    bool stopping = false;
};

/// Copies the first `size` bytes of a file to a sink; a failure when there are fewer.
Status copySource(Source& source, std::uint64_t size, const Deflater::Sink& sink, std::uint32_t& crc);

} // namespace bxzip
