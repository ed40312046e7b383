// TalvoXMLDocument: an XML document, an ordered list of root terms.
//
// Layout: `_docType`, an owned copy of the document-type name (null after
// construction; when set the printer writes a "<!DOCTYPE ...>" line), and
// `_roots`, an owned TalvoList of owned TalvoXMLTerm.
// Invariant: the document owns every root and, through them, the whole tree.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

#include <cstdio>

class TalvoList;
class TalvoListCursor;
class TalvoStream;
class TalvoXMLTerm;

class TALVO_API TalvoXMLDocument : public TalvoObject<TalvoXMLDocument> {
public:
    static constexpr const char* ClassName = "TalvoXMLDocument";

    // An empty document without a document type.
    TalvoXMLDocument();
    // Deletes every root with its subtree, whatever its depth. O(tree size).
    ~TalvoXMLDocument();
    TalvoXMLDocument(const TalvoXMLDocument&) = delete;
    TalvoXMLDocument& operator=(const TalvoXMLDocument&) = delete;

    // Deletes a document given as an Item; null is accepted.
    static void free(void* document);

    // The document-type name (owned by the document), or null.
    const char* getDocType() const { return _docType; }
    // Replaces the document-type name by a copy of `docType` (null removes it).
    void setDocType(const char* docType);

    // A new cursor on the roots, owned by the caller.
    TalvoListCursor* newCursorOnRoots();
    // Appends `root`, which the document then owns; null is ignored.
    void addRoot(TalvoXMLTerm* root);
    // The first root of any type whose stored text equals `tag`, or null. O(roots).
    TalvoXMLTerm* findRoot(const char* tag);
    // Deletes every root with its subtree; the document type stays. O(tree size).
    void reset();

    // Parses `file` into this document (replacing its roots). The result code
    // is not passed on: a failed load leaves the document empty and its report
    // on the standard error stream. The caller closes the file.
    void load(FILE* file);
    // Prints the document on `stream` with an indentation unit of
    // `indentation` blanks. A null stream prints nothing.
    void print(TalvoStream* stream, int indentation);
    // Prints as above on `file`, which the document takes over: it is closed
    // afterwards unless it is a standard stream. A null file prints nothing.
    void print(FILE* file, int indentation);

private:
    char* _docType;
    TalvoList* _roots;
};
