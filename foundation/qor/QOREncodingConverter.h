#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

#include <cstddef>
#include <string>

/// One text encoding, to convert from and to. A converter is used by one thread at a time.
class QOR_API QOREncodingConverter {
public:
    /// A converter for any encoding that the C library knows, by its name in upper or lower case; the caller
    /// deletes it. Null for an unknown name, and for what the C library takes but is no name: one with a
    /// suffix such as //TRANSLIT, which would hide lost characters, one that begins with other than a letter
    /// or a digit, one with blanks, commas or other signs that it passes over. Throws std::bad_alloc if the C
    /// library knows the encoding but lacks the memory or the files to open it.
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

/// Returns the text, converted from the encoding of `from` to that of `to`; adds 1 to `firstCounter`. What it
/// returns reads in the target encoding as the same characters. A text for which that can't be had is
/// returned unchanged and adds 1 to `errorCounter` instead: one that is invalid in its encoding, one with a
/// character that the target lacks or understands otherwise, such as ESC in ISO-2022-JP, and one whose
/// conversion would hold a NUL byte. If either converter is null, the text is returned unchanged and nothing
/// is counted. Throws std::bad_alloc with both counters as they were.
QOR_API QORString convertEncoding(QORString const& text, QOREncodingConverter* from, QOREncodingConverter* to,
                                  int& firstCounter, int& errorCounter);

/// Whether `convertEncoding` would return the text unchanged; counts it in `firstCounter` then, as that does.
QOR_API bool isUnchangedByEncoding(QORString const& text, QOREncodingConverter const* from,
                                   QOREncodingConverter const* to, int& firstCounter);
