// Character streams and buffers against the C runtime and std::string.
//
// Reading and writing a 100 MB file one character at a time: TalvoFileStream
// getChar / put(char) against fgetc / fputc and getc_unlocked / putc_unlocked.
// The file is generated once in a temporary directory and removed at exit.
// Appending single characters: TalvoCharBuffer::append(char) against
// std::string::push_back.
#include <benchmark/benchmark.h>

#include <talvo/text/TalvoCharBuffer.h>
#include <talvo/text/TalvoFileStream.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

const long kFileSize = 100L * 1024 * 1024;
const int kAppendCount = 4096;

// The generated input file and a scratch output file in a private temp dir.
class Files {
public:
    Files() {
        char pattern[] = "/tmp/talvo-text-bench-XXXXXX";
        if (!mkdtemp(pattern))
            std::abort();
        directory_ = pattern;
        input_ = directory_ + "/input.txt";
        output_ = directory_ + "/output.txt";
        writeInput();
    }
    ~Files() {
        std::remove(input_.c_str());
        std::remove(output_.c_str());
        rmdir(directory_.c_str());
    }
    const char* input() const { return input_.c_str(); }
    const char* output() const { return output_.c_str(); }

private:
    // Printable text in lines of 0 to 99 characters; no byte 0xFF, which
    // a char-valued reader takes for the end.
    void writeInput() {
        FILE* file = std::fopen(input_.c_str(), "wb");
        unsigned state = 12345;
        std::string chunk;
        for (long written = 0; written < kFileSize; written += static_cast<long>(chunk.size())) {
            chunk.clear();
            while (chunk.size() < 65536) {
                state = state * 1103515245u + 12345u;
                unsigned r = (state >> 16) & 0x7FFF;
                chunk += r % 100 == 0 ? '\n' : static_cast<char>(' ' + r % 95);
            }
            if (written + static_cast<long>(chunk.size()) > kFileSize)
                chunk.resize(static_cast<std::size_t>(kFileSize - written));
            std::fwrite(chunk.data(), 1, chunk.size(), file);
        }
        std::fclose(file);
    }

    std::string directory_, input_, output_;
};

const Files& files() {
    static Files instance;
    return instance;
}

void BM_Read_TalvoGetChar(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        FILE* file = std::fopen(files().input(), "rb");
        TalvoFileStream stream(true, file);
        long count = 0;
        while (stream.getChar() != -1)
            ++count;
        benchmark::DoNotOptimize(count);
        stream.close();
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

// The same through the base class, as the library's own readers call it.
void BM_Read_TalvoGetCharVirtual(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        TalvoFileStream file(true, std::fopen(files().input(), "rb"));
        TalvoStream* stream = &file;
        benchmark::DoNotOptimize(stream);
        long count = 0;
        while (stream->getChar() != -1)
            ++count;
        benchmark::DoNotOptimize(count);
        stream->close();
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

void BM_Read_Fgetc(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        FILE* file = std::fopen(files().input(), "rb");
        long count = 0;
        while (std::fgetc(file) != EOF)
            ++count;
        benchmark::DoNotOptimize(count);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

void BM_Read_GetcUnlocked(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        FILE* file = std::fopen(files().input(), "rb");
        long count = 0;
        while (getc_unlocked(file) != EOF)
            ++count;
        benchmark::DoNotOptimize(count);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

// The bytes written: a repeating printable pattern with newlines.
char patternByte(long i) {
    return i % 80 == 79 ? '\n' : static_cast<char>('a' + i % 26);
}

void BM_Write_TalvoPutChar(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        TalvoFileStream stream(false, std::fopen(files().output(), "wb"));
        for (long i = 0; i < kFileSize; ++i)
            stream.put(patternByte(i));
        stream.close();
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

void BM_Write_TalvoPutCharVirtual(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        TalvoFileStream file(false, std::fopen(files().output(), "wb"));
        TalvoStream* stream = &file;
        benchmark::DoNotOptimize(stream);
        for (long i = 0; i < kFileSize; ++i)
            stream->put(patternByte(i));
        stream->close();
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

void BM_Write_Fputc(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        FILE* file = std::fopen(files().output(), "wb");
        for (long i = 0; i < kFileSize; ++i)
            std::fputc(patternByte(i), file);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

void BM_Write_PutcUnlocked(benchmark::State& state) {
    files();  // generated before timing starts
    for (auto _ : state) {
        FILE* file = std::fopen(files().output(), "wb");
        for (long i = 0; i < kFileSize; ++i)
            putc_unlocked(patternByte(i), file);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * kFileSize);
}

// Steady state: the block is kept between rounds.
void BM_Append_TalvoCharBuffer(benchmark::State& state) {
    TalvoCharBuffer buffer(32);
    for (auto _ : state) {
        buffer.reset();
        for (int i = 0; i < kAppendCount; ++i)
            buffer.append(static_cast<char>('a' + i % 26));
        benchmark::DoNotOptimize(buffer.getString());
    }
    state.SetItemsProcessed(state.iterations() * kAppendCount);
}

void BM_Append_StdStringPushBack(benchmark::State& state) {
    std::string text;
    for (auto _ : state) {
        text.clear();
        for (int i = 0; i < kAppendCount; ++i)
            text.push_back(static_cast<char>('a' + i % 26));
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * kAppendCount);
}

// From nothing: the buffer grows by its increment (here the streams' 32),
// std::string geometrically.
void BM_AppendFresh_TalvoCharBuffer(benchmark::State& state) {
    for (auto _ : state) {
        TalvoCharBuffer buffer(32);
        for (int i = 0; i < kAppendCount; ++i)
            buffer.append(static_cast<char>('a' + i % 26));
        benchmark::DoNotOptimize(buffer.getString());
    }
    state.SetItemsProcessed(state.iterations() * kAppendCount);
}

void BM_AppendFresh_StdStringPushBack(benchmark::State& state) {
    for (auto _ : state) {
        std::string text;
        for (int i = 0; i < kAppendCount; ++i)
            text.push_back(static_cast<char>('a' + i % 26));
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * kAppendCount);
}

}  // namespace

BENCHMARK(BM_Read_TalvoGetChar)->Name("read_char/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_TalvoGetCharVirtual)->Name("read_char_virtual/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_Fgetc)->Name("read_char/stdio")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_GetcUnlocked)->Name("read_char/stdio_unlocked")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_TalvoPutChar)->Name("write_char/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_TalvoPutCharVirtual)->Name("write_char_virtual/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_Fputc)->Name("write_char/stdio")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_PutcUnlocked)->Name("write_char/stdio_unlocked")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Append_TalvoCharBuffer)->Name("append_char/talvo");
BENCHMARK(BM_Append_StdStringPushBack)->Name("append_char/std");
BENCHMARK(BM_AppendFresh_TalvoCharBuffer)->Name("append_char_fresh/talvo");
BENCHMARK(BM_AppendFresh_StdStringPushBack)->Name("append_char_fresh/std");
