#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// A document's bytes as text, by its own mark, its XML declaration, the transport's charset, or UTF-8, in this order.
// Strict: nothing when the bytes do not fit the encoding they declare.
std::optional<QString> descodificarDocumento(const QByteArray &bytes, const QByteArray &tipoDeConteudo);
