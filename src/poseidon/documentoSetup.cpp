#include "poseidon/documentoSetup.h"

#include "core/literais.h"
#include "poseidon/mensagens2251.h"

#include <pugixml.hpp>

#include <algorithm>

namespace {

QString textoDe(const pugi::xml_node &elemento) {
    QString texto;
    for (const pugi::xml_node &parte : elemento.children())
        if (parte.type() == pugi::node_pcdata || parte.type() == pugi::node_cdata)
            texto += QString::fromUtf8(parte.value());
    return texto.trimmed();
}

std::optional<QString> filho(const pugi::xml_node &elemento, const char *nome) {
    const pugi::xml_node achado = elemento.child(nome);
    return achado ? std::optional(textoDe(achado)) : std::nullopt;
}

// Walks without recursion: a document may be as deep as it likes.
class Leitor : public pugi::xml_tree_walker {
public:
    explicit Leitor(DocumentoSetup &documento) : m_documento(documento) {}
    bool for_each(pugi::xml_node &no) override {
        const std::string_view nome = no.name();
        if (nome == "Network")
            lerRede(no);
        else if (nome == "Time")
            lerHora(no);
        else if (nome == "Agent" && !m_documento.temAgent)
            lerAgente(no);
        else if (nome == "SenSet")
            lerCanais(no);
        return true;
    }

private:
    void lerRede(const pugi::xml_node &no) {
        bool numero = false;
        const int porta = filho(no, "TelnetPort").value_or(QString()).toInt(&numero);
        if (numero && !m_documento.TelnetPort)
            m_documento.TelnetPort = porta;
    }
    void lerHora(const pugi::xml_node &no) {
        m_documento.temTime = true;
        m_documento.Date = filho(no, "Date").value_or(m_documento.Date);
        m_documento.Time = filho(no, "Time").value_or(m_documento.Time);
    }
    void lerAgente(const pugi::xml_node &no) {
        m_documento.temAgent = true;
        m_documento.Model = filho(no, "Model").value_or(QString());
        m_documento.MAC = filho(no, "MAC").value_or(QString());
        m_documento.DeviceName = filho(no, "DeviceName").value_or(QString());
    }
    void lerCanais(const pugi::xml_node &no) {
        m_documento.temSenSet = true;
        for (const pugi::xml_node &canal : no.children())
            if (canal.type() == pugi::node_element)
                m_documento.canais.append({filho(canal, "ID"), filho(canal, "Name"), filho(canal, "Units"),
                                           filho(canal, "Value"), filho(canal, "Min"), filho(canal, "Max")});
    }
    DocumentoSetup &m_documento;
};

bool temTipoDeDocumento(const pugi::xml_document &documento) {
    return std::any_of(documento.begin(), documento.end(),
                       [](const pugi::xml_node &no) { return no.type() == pugi::node_doctype; });
}

} // namespace

DocumentoSetup DocumentoSetup::ler(const QString &xml) {
    using namespace mensagens2251;
    DocumentoSetup lido;
    const auto recusar = [&](const Mensagem &mensagem) {
        lido = {};
        lido.motivo = mensagem.texto();
        return lido;
    };
    if (QStringView(xml).trimmed().isEmpty())
        return recusar(xmlVazio);
    if (xml.size() > maximoDeCaracteres)
        return recusar(xmlGrande);
    // What a decoder leaves behind where bytes were no text.
    if (xml.contains(QChar::ReplacementCharacter) || xml.contains(QChar::Null) || !xml.isValidUtf16())
        return recusar(xmlCodificacao);
    const QByteArray utf8 = xml.toUtf8();
    pugi::xml_document documento;
    const auto resultado = documento.load_buffer(utf8.constData(), size_t(utf8.size()),
                                                 pugi::parse_default | pugi::parse_doctype, pugi::encoding_utf8);
    if (!resultado)
        return recusar(xmlMalFormado);
    if (temTipoDeDocumento(documento))
        return recusar(xmlEntidades);
    Leitor leitor(lido);
    documento.traverse(leitor);
    return lido;
}
