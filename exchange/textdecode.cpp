#include "exchange/textdecode.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucsdet.h>

#include <QHash>
#include <memory>
#include <vector>

namespace tarvel::exchange {

namespace {

const QByteArray kUtf8Bom("\xEF\xBB\xBF");
const QByteArray kUtf16LeBom("\xFF\xFE");
const QByteArray kUtf16BeBom("\xFE\xFF");

// Labels other programs write, mapped to the converter that reads what they
// really mean (Windows and phones write supersets under the older names).
QByteArray converterName(const QByteArray& label) {
    static const QHash<QByteArray, QByteArray> aliases = {
        {"gb2312", "GB18030"},
        {"gbk", "GB18030"},
        {"cp936", "GB18030"},
        {"ms936", "GB18030"},
        {"windows-936", "GB18030"},
        {"gb_2312-80", "GB18030"},
        {"euc-cn", "GB18030"},
        {"x-gbk", "GB18030"},
        {"gb18030", "GB18030"},
        {"big5", "windows-950"},
        {"big-5", "windows-950"},
        {"cp950", "windows-950"},
        {"big5-hkscs", "Big5-HKSCS"},
        {"shift_jis", "windows-31j"},
        {"shift-jis", "windows-31j"},
        {"sjis", "windows-31j"},
        {"x-sjis", "windows-31j"},
        {"ms_kanji", "windows-31j"},
        {"cp932", "windows-31j"},
        {"windows-31j", "windows-31j"},
        {"iso-8859-1", "windows-1252"},
        {"latin1", "windows-1252"},
        {"latin-1", "windows-1252"},
        {"us-ascii", "UTF-8"},
        {"ascii", "UTF-8"},
        {"utf8", "UTF-8"},
        {"utf-8", "UTF-8"},
        {"euc-kr", "windows-949"},
        {"ks_c_5601-1987", "windows-949"},
        {"cp949", "windows-949"},
    };
    const QByteArray key = label.trimmed().toLower();
    return aliases.value(key, label.trimmed());
}

struct ConverterCloser {
    void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

Converter openConverter(const QByteArray& name) {
    UErrorCode status = U_ZERO_ERROR;
    Converter c(ucnv_open(name.constData(), &status));
    return U_SUCCESS(status) ? std::move(c) : Converter();
}

// Where the decoder met bytes it could not read, as offsets into the output.
struct BadPlaces {
    const UChar* start = nullptr;
    std::vector<qsizetype> offsets;
};

void recordAndSubstitute(const void* context, UConverterToUnicodeArgs* args, const char* bytes,
                         int32_t length, UConverterCallbackReason reason, UErrorCode* status) {
    if (reason <= UCNV_IRREGULAR) {
        auto* places = static_cast<BadPlaces*>(const_cast<void*>(context));
        places->offsets.push_back(args->target - places->start);
    }
    UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, args, bytes, length, reason, status);
}

DecodedText decodeWith(UConverter* converter, const QByteArray& bytes, const QByteArray& name) {
    DecodedText out;
    out.encoding = name;
    // One byte never gives more than two UTF-16 units, substitutions included.
    std::vector<UChar> buffer(size_t(bytes.size()) * 2 + 16);
    BadPlaces places;
    places.start = buffer.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, recordAndSubstitute, &places, nullptr, nullptr, &status);
    UChar* target = buffer.data();
    const char* source = bytes.constData();
    ucnv_toUnicode(converter, &target, buffer.data() + buffer.size(), &source,
                   bytes.constData() + bytes.size(), nullptr, true, &status);
    if (U_FAILURE(status)) {
        out.badLines << 1;
        return out;
    }
    out.text = QString(reinterpret_cast<const QChar*>(buffer.data()), target - buffer.data());
    int line = 1;
    qsizetype scanned = 0;
    for (const qsizetype offset : places.offsets) {
        for (; scanned < offset && scanned < out.text.size(); ++scanned)
            if (out.text[scanned] == QLatin1Char('\n')) ++line;
        if (out.badLines.isEmpty() || out.badLines.last() != line) out.badLines << line;
    }
    return out;
}

// In how many places bytes fail to read as UTF-8 (a run of bad bytes is one
// place), and how many multi-byte characters read well.
struct Utf8Census {
    int invalid = 0;
    int multiByte = 0;
};

Utf8Census utf8Census(const QByteArray& bytes) {
    Utf8Census census;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype n = bytes.size();
    bool badRun = false;
    for (qsizetype i = 0; i < n;) {
        const unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            badRun = false;
            continue;
        }
        int length = 0;
        unsigned char low = 0x80, high = 0xBF;
        if (c >= 0xC2 && c <= 0xDF)
            length = 2;
        else if (c >= 0xE0 && c <= 0xEF)
            length = 3, low = c == 0xE0 ? 0xA0 : 0x80, high = c == 0xED ? 0x9F : 0xBF;
        else if (c >= 0xF0 && c <= 0xF4)
            length = 4, low = c == 0xF0 ? 0x90 : 0x80, high = c == 0xF4 ? 0x8F : 0xBF;
        bool ok = length > 0 && i + length <= n && p[i + 1] >= low && p[i + 1] <= high;
        for (int k = 2; ok && k < length; ++k) ok = (p[i + k] & 0xC0) == 0x80;
        if (ok) {
            ++census.multiByte;
            i += length;
            badRun = false;
        } else {
            census.invalid += !badRun;
            badRun = true;
            ++i;
        }
    }
    return census;
}

// UTF-16 without a byte-order mark: text in it has a zero byte in most pairs,
// on the same side.
QByteArray utf16WithoutMark(const QByteArray& bytes) {
    const qsizetype pairs = qMin<qsizetype>(bytes.size(), 4096) / 2;
    if (pairs < 2) return {};
    int zeroEven = 0, zeroOdd = 0;
    for (qsizetype i = 0; i < pairs; ++i) {
        zeroEven += bytes[2 * i] == '\0';
        zeroOdd += bytes[2 * i + 1] == '\0';
    }
    if (zeroEven * 10 >= pairs * 3 && zeroOdd * 10 < pairs) return "UTF-16BE";
    if (zeroOdd * 10 >= pairs * 3 && zeroEven * 10 < pairs) return "UTF-16LE";
    return {};
}

int errorsIn(const QByteArray& bytes, const QByteArray& name) {
    const Converter c = openConverter(converterName(name));
    if (!c) return INT_MAX;
    return int(decodeWith(c.get(), bytes, name).badLines.size());
}

// A legacy encoding: what ICU's detector finds likeliest among those that
// read every byte; this program's users write Chinese, so GB18030 is tried
// first when the detector has nothing better.
QByteArray legacyEncoding(const QByteArray& bytes) {
    static const QList<QByteArray> accepted = {
        "GB18030",      "Big5",         "Shift_JIS",    "EUC-JP",       "EUC-KR", "windows-1252",
        "windows-1251", "windows-1250", "windows-1253", "windows-1254", "KOI8-R", "ISO-8859-1"};
    UErrorCode status = U_ZERO_ERROR;
    UCharsetDetector* detector = ucsdet_open(&status);
    QList<QByteArray> ranked;
    if (U_SUCCESS(status)) {
        ucsdet_setText(detector, bytes.constData(), int32_t(bytes.size()), &status);
        int32_t found = 0;
        const UCharsetMatch** matches = ucsdet_detectAll(detector, &found, &status);
        for (int32_t i = 0; U_SUCCESS(status) && i < found; ++i) {
            UErrorCode s = U_ZERO_ERROR;
            const QByteArray name = ucsdet_getName(matches[i], &s);
            const int confidence = ucsdet_getConfidence(matches[i], &s);
            // Short texts give weak guesses; a weak CJK guess is no reason to
            // prefer Big5 or Shift_JIS over GB18030.
            if (U_SUCCESS(s) && accepted.contains(name) && (confidence >= 50 || ranked.isEmpty()))
                ranked << (name == "ISO-8859-1" ? QByteArray("windows-1252") : name);
        }
    }
    ucsdet_close(detector);
    const bool strongCjk =
        !ranked.isEmpty() && (ranked.first() == "Big5" || ranked.first() == "Shift_JIS" ||
                              ranked.first() == "EUC-JP" || ranked.first() == "EUC-KR");
    QList<QByteArray> order;
    if (strongCjk) order << ranked.first();
    order << "GB18030" << ranked << "Big5"
          << "Shift_JIS"
          << "windows-1252";
    for (const QByteArray& name : order)
        if (errorsIn(bytes, name) == 0) return name;
    return "windows-1252";
}

}  // namespace

QString DecodedText::problem() const {
    if (badLines.isEmpty()) return {};
    QStringList lines;
    for (qsizetype i = 0; i < badLines.size() && i < 10; ++i) lines << QString::number(badLines[i]);
    QString text = QStringLiteral("第%1行有无法按%2读取的字节，已显示为\uFFFD")
                       .arg(lines.join(QStringLiteral("、")), QString::fromLatin1(encoding));
    if (badLines.size() > 10) text += QStringLiteral("（共%1行）").arg(badLines.size());
    return text;
}

QByteArray detectEncoding(const QByteArray& bytes) {
    if (bytes.startsWith(kUtf8Bom)) return "UTF-8";
    if (bytes.startsWith(kUtf16LeBom)) return "UTF-16LE";
    if (bytes.startsWith(kUtf16BeBom)) return "UTF-16BE";
    const QByteArray utf16 = utf16WithoutMark(bytes);
    if (!utf16.isEmpty()) return utf16;
    const Utf8Census census = utf8Census(bytes);
    // A UTF-8 file with a few damaged bytes stays UTF-8: read as anything else
    // every character of it would be wrong.
    // Text in a legacy encoding has far more bad places than good characters.
    if (census.invalid == 0 || census.multiByte >= 4 * census.invalid) return "UTF-8";
    return legacyEncoding(bytes);
}

DecodedText decodeText(const QByteArray& bytes) {
    const QByteArray encoding = detectEncoding(bytes);
    QByteArray body = bytes;
    if (encoding == "UTF-8" && bytes.startsWith(kUtf8Bom))
        body = bytes.mid(kUtf8Bom.size());
    else if ((encoding == "UTF-16LE" && bytes.startsWith(kUtf16LeBom)) ||
             (encoding == "UTF-16BE" && bytes.startsWith(kUtf16BeBom)))
        body = bytes.mid(2);
    return decodeAs(body, encoding);
}

DecodedText decodeAs(const QByteArray& bytes, const QByteArray& encoding) {
    const Converter c = openConverter(converterName(encoding));
    if (!c) {
        DecodedText unknown;
        unknown.badLines << 1;
        return unknown;
    }
    return decodeWith(c.get(), bytes, encoding);
}

bool knownEncoding(const QByteArray& name) {
    return openConverter(converterName(name)) != nullptr;
}

}  // namespace tarvel::exchange
