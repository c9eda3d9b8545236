#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

#include <cstddef>
#include <string>

/// One text encoding, to convert from and to. A converter is used by one thread at a time.
class QOR_API QOREncodingConverter {
public:
    /// A converter for any encoding that the C library knows, by its name in upper or lower case; null for an
    /// unknown name. The caller deletes it. Throws std::bad_alloc if the C library lacks memory or files to
    /// open it.
    static QOREncodingConverter* create(char const* encodingName);

    QOREncodingConverter(QOREncodingConverter const&) = delete;
    QOREncodingConverter& operator=(QOREncodingConverter const&) = delete;
    ~QOREncodingConverter();

    /// The name that the converter was created with.
    char const* getName() const noexcept { return name.chars; }

private:
    friend QOR_API QORString convertEncoding(QORString const&, QOREncodingConverter*, QOREncodingConverter*,
                                             int&, int&);
    friend QOR_API bool isUnchangedByEncoding(QORString const&, QOREncodingConverter const*,
                                              QOREncodingConverter const*, int&);

    enum class Kind { UTF_8, ISO_8859_1, OTHER };

    QORString name;
    Kind kind;
    bool extendsAscii = true;
    bool dropsTags = false;
    void* decoder; // to UTF-8; iconv descriptors, null for the kinds that need none
    void* encoder; // from UTF-8

    QOREncodingConverter(char const* encodingName, Kind encodingKind);
    bool open();
    void probe();
    bool toUtf8(char const* text, std::size_t count, std::string& result) const;
    bool fromUtf8(std::string const& text, std::string& result) const;
};

/// The text, converted from the encoding of `from` to that of `to`; adds 1 to `firstCounter`. A text that is
/// invalid in its encoding, or has a character that the target lacks, or whose conversion would hold a NUL
/// byte, is given unchanged and adds 1 to `errorCounter` instead. If either converter is null, the text is
/// given unchanged and nothing is counted. Throws std::bad_alloc with both counters as they were.
QOR_API QORString convertEncoding(QORString const& text, QOREncodingConverter* from, QOREncodingConverter* to,
                                  int& firstCounter, int& errorCounter);

/// Whether `convertEncoding` would give the text unchanged; counts it in `firstCounter` then, as that does.
QOR_API bool isUnchangedByEncoding(QORString const& text, QOREncodingConverter const* from,
                                   QOREncodingConverter const* to, int& firstCounter);
