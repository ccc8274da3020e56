// Compresses files of any size on all of the machine's cores.
#include "SorvaneBase/bxzip/Deflater.h"

#include "SorvaneBase/bxzip/DeflateJoin.h"

#include <libdeflate.h>

#include <algorithm>
#include <new>
#include <system_error>

namespace bxzip {
namespace {

// Level 6 is where the gain of a higher one ends on scanned pages.
constexpr int compressionLevel = 6;

// Each thread has one chunk to work on and one that waits, so that it does not wait for the disk.
constexpr std::size_t chunksPerThread = 2;

using Buffer = std::unique_ptr<std::byte[]>;

Status readAll(Source& source, std::uint64_t offset, std::byte* buffer, std::size_t size) {
    std::size_t count = 0;
    if (Status status = source.read(offset, buffer, size, count); !status.isOk())
        return status;
    return count == size ? Status() : Status("the page's file became shorter while it was read");
}

} // namespace

struct Deflater::Compressor {
    Compressor() : handle(libdeflate_alloc_compressor(compressionLevel)) {
        if (!handle)
            throw std::bad_alloc();
    }
    ~Compressor() { libdeflate_free_compressor(handle); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    libdeflate_compressor* handle;
};

struct Deflater::Chunk {
    explicit Chunk(Compressor& compressor)
        : inputBuffer(new std::byte[chunkSize]),
          outputCapacity(libdeflate_deflate_compress_bound(compressor.handle, chunkSize)),
          outputBuffer(new std::byte[outputCapacity + deflateJoinSize]) {}

    /// Takes the part of a file of that size that begins at the offset, and moves the offset behind it.
    Status load(Source& source, std::uint64_t& offset, std::uint64_t size) {
        inputSize = static_cast<std::size_t>(std::min<std::uint64_t>(chunkSize, size - offset));
        isLast = offset + inputSize == size;
        Status status = readAll(source, offset, inputBuffer.get(), inputSize);
        offset += inputSize;
        return status;
    }

    std::uint32_t crcAfter(std::uint32_t crc) const {
        return libdeflate_crc32(crc, inputBuffer.get(), inputSize);
    }

    /// Runs on any thread, allocates nothing.
    void compress(Compressor& compressor) {
        outputSize = libdeflate_deflate_compress(compressor.handle, inputBuffer.get(), inputSize,
                                                 outputBuffer.get(), outputCapacity);
        isValid = outputSize != 0 && (isLast || openDeflateStream(outputBuffer.get(), outputSize));
    }

    Buffer inputBuffer;
    std::size_t inputSize = 0;
    std::size_t outputCapacity;
    Buffer outputBuffer;
    std::size_t outputSize = 0;
    bool isLast = false;
    bool isValid = false;
    bool isDone = false; ///< guarded by the mutex while a thread has the chunk
};

Deflater::Deflater(unsigned threads) : threadCount(std::clamp(threads, 1u, maxThreads)) {}

Deflater::~Deflater() {
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    workArrived.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

void Deflater::startThreads() {
    // A system that is short of threads or of memory for them still has the caller's.
    try {
        threads.reserve(threadCount);
        compressors.reserve(threadCount);
        chunks.reserve(threadCount * chunksPerThread);
        while (threads.size() < threadCount) {
            auto compressor = std::make_unique<Compressor>();
            std::unique_ptr<Chunk> own[chunksPerThread];
            for (auto& chunk : own)
                chunk = std::make_unique<Chunk>(*compressor);
            threads.emplace_back(&Deflater::work, this, std::ref(*compressor));
            compressors.push_back(std::move(compressor));
            for (auto& chunk : own)
                chunks.push_back(std::move(chunk));
        }
    } catch (const std::bad_alloc&) {
        threadCount = static_cast<unsigned>(threads.size());
    } catch (const std::system_error&) {
        threadCount = static_cast<unsigned>(threads.size());
    }
}

void Deflater::work(Compressor& compressor) {
    std::unique_lock lock(mutex);
    for (;;) {
        workArrived.wait(lock, [this] { return stopping || started < submitted; });
        if (stopping)
            return;
        Chunk& chunk = chunkAt(started++);
        lock.unlock();
        chunk.compress(compressor);
        lock.lock();
        chunk.isDone = true;
        workDone.notify_one();
    }
}

void Deflater::submitNext() {
    {
        const std::lock_guard lock(mutex);
        chunkAt(submitted).isDone = false;
        ++submitted;
    }
    workArrived.notify_one();
}

void Deflater::waitFor(const Chunk& chunk) {
    std::unique_lock lock(mutex);
    workDone.wait(lock, [&] { return chunk.isDone; });
}

Status Deflater::deflate(Source& source, std::uint64_t size, const Sink& sink, Result& result) {
    result = {};
    if (size > chunkSize) {
        if (threads.empty() && threadCount > 1)
            startThreads();
        if (!threads.empty())
            return deflateInParallel(source, size, sink, result);
    }

    if (!ownCompressor)
        ownCompressor = std::make_unique<Compressor>();
    if (!ownChunk)
        ownChunk = std::make_unique<Chunk>(*ownCompressor);
    Chunk& chunk = *ownChunk;
    for (std::uint64_t offset = 0; offset < size;) {
        if (Status status = chunk.load(source, offset, size); !status.isOk())
            return status;
        result.crc = chunk.crcAfter(result.crc);
        chunk.compress(*ownCompressor);
        if (!chunk.isValid)
            return Status("the compression failed");
        result.compressedSize += chunk.outputSize;
        if (Status status = sink(chunk.outputBuffer.get(), chunk.outputSize); !status.isOk())
            return status;
    }
    return {};
}

Status Deflater::deflateInParallel(Source& source, std::uint64_t size, const Sink& sink, Result& result) {
    // No thread has a chunk now. Only this one changes `submitted`, so it may read it without the mutex.
    {
        const std::lock_guard lock(mutex);
        submitted = 0;
        started = 0;
    }
    std::uint64_t offset = 0;
    std::uint64_t taken = 0;
    // After a failure, an exception of the sink's included, threads may still work on chunks, which the next
    // file wants.
    struct AtEnd {
        Deflater& deflater;
        std::uint64_t& taken;
        ~AtEnd() {
            for (; taken < deflater.submitted; ++taken)
                deflater.waitFor(deflater.chunkAt(taken));
        }
    } const atEnd{*this, taken};
    Status status;
    while (status.isOk() && (offset < size || taken < submitted)) {
        if (offset < size && submitted - taken < chunks.size()) {
            Chunk& chunk = chunkAt(submitted);
            status = chunk.load(source, offset, size);
            if (status.isOk()) {
                submitNext();
                result.crc = chunk.crcAfter(result.crc);
            }
            continue;
        }
        Chunk& chunk = chunkAt(taken);
        waitFor(chunk);
        ++taken;
        result.compressedSize += chunk.outputSize;
        status = chunk.isValid ? sink(chunk.outputBuffer.get(), chunk.outputSize)
                               : Status("the compression failed");
    }
    return status;
}

Status copySource(Source& source, std::uint64_t size, const Deflater::Sink& sink, std::uint32_t& crc) {
    constexpr std::size_t bufferSize = std::size_t{1} << 20;
    const auto buffer = Buffer(new std::byte[std::min<std::uint64_t>(bufferSize, size)]);
    crc = 0;
    for (std::uint64_t offset = 0; offset < size;) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bufferSize, size - offset));
        if (Status status = readAll(source, offset, buffer.get(), count); !status.isOk())
            return status;
        crc = libdeflate_crc32(crc, buffer.get(), count);
        if (Status status = sink(buffer.get(), count); !status.isOk())
            return status;
        offset += count;
    }
    return {};
}

} // namespace bxzip
