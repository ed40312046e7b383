// Streams over files and memory, and character buffers.
#include <talvo/talvo.h>

#include <cstdio>

int main() {
    TalvoMemoryManager::start();
    {
        TalvoFileStream out(false, stdout);
        out.setSignificantDigitNumber(3);
        out.put("pi is about ");
        out.putln(3.14159);  // "pi is about 3.14", flushed

        char text[] = "a\nb";
        TalvoRawStringStream in(true, text, 3);
        while (in.getChar() != 0) {
        }
        out.putln(in.getLineNumber());  // 1

        TalvoCharBuffer* buffer = new TalvoCharBuffer(32);
        buffer->append("key=");
        buffer->append(42);
        out.putln(buffer->getString());  // key=42
        TalvoCharBuffer::free(buffer);
    }
    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
