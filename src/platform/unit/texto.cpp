#include "platform/unit/texto.h"

#include "core/literais.h"

#include <QRegularExpression>
#include <QStringDecoder>

namespace {

QByteArray declarada(const QByteArray &bytes, const QByteArray &tipoDeConteudo) {
    static const QRegularExpression xml(uR"(\A\s*<\?xml[^>]*?\sencoding\s*=\s*["']([A-Za-z0-9._:-]+)["'])"_s);
    static const QRegularExpression http(uR"(;\s*charset\s*=\s*"?([A-Za-z0-9._:-]+))"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    const auto noDocumento = xml.match(QString::fromLatin1(bytes.left(200)));
    if (noDocumento.hasMatch())
        return noDocumento.captured(1).toLatin1();
    const auto noTransporte = http.match(QString::fromLatin1(tipoDeConteudo));
    return noTransporte.hasMatch() ? noTransporte.captured(1).toLatin1() : QByteArray("UTF-8");
}

} // namespace

std::optional<QString> descodificarDocumento(const QByteArray &bytes, const QByteArray &tipoDeConteudo) {
    QStringDecoder leitor = [&] {
        if (const auto marca = QStringConverter::encodingForData(bytes))
            return QStringDecoder(*marca);
        return QStringDecoder(declarada(bytes, tipoDeConteudo).constData());
    }();
    if (!leitor.isValid())
        return std::nullopt;
    const QString texto = leitor(bytes);
    // Not every decoder tells of what it could not read; the sign it puts instead does.
    const bool trocado = texto.contains(QChar(QChar::ReplacementCharacter)) && !bytes.contains("\xEF\xBF\xBD");
    if (leitor.hasError() || trocado || texto.contains(QChar(QChar::Null)))
        return std::nullopt;
    return texto;
}
