#include "poseidon/listaPoseidons.h"

#include "core/literais.h"
#include "core/rotina.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/documentoSetup.h"
#include "poseidon/modHwGroup.h"
#include "poseidon/modPoseidons.h"

#include <algorithm>
#include <optional>

namespace {

constexpr int tempoLimite = 2000; // ms, of every unit

// The whole number of a column that may hold anything.
int inteiroDe(const QString &texto, int omissao) {
    bool ok = false;
    const double n = QString(texto).replace(u',', u'.').toDouble(&ok);
    return ok ? int(n) : omissao;
}

QString nomeDoModelo(int codigo) {
    return modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(codigo);
}

// The list holds a name as a search or a document gives it, cut; a longer one in the table is the same name, whole.
bool eInicioOuFim(const QString &daLista, const QString &guardado) {
    return daLista.size() == listaPoseidons::maximoDoNome &&
           (guardado.startsWith(daLista) || guardado.endsWith(daLista));
}

} // namespace

namespace listaPoseidons {

void Lista::CarregarListaDeDispositivosJaExistentes() {
    Rotina("frmDescarregar2251.CarregarListaDeDispositivosJaExistentes", [&] {
        Recordset rs =
            cnBD().consultar(u"SELECT * FROM Poseidons WHERE Modelo = %1 OR Modelo = %2"_s.arg(modHwGroup::modelo2251)
                                 .arg(modHwGroup::modelo2250));
        while (rs.avancar()) {
            const QString mac = rs.texto(u"Mac"_s);
            if (VerificarSeJaExisteNaLista(mac) != 0)
                continue;
            const int modelo = int(rs.inteiro(u"Modelo"_s));
            AdicionarLinhaPoseidon(
                rs.texto(u"PoseidonIP"_s), inteiroDe(rs.texto(u"Porta"_s), modPoseidons::portaPorOmissao), mac, modelo,
                nomeDoModelo(modelo), rs.texto(u"Nome"_s), rs.texto(u"m"_s), rs.inteiro(u"VistrelS"_s) != 0,
                rs.inteiro(u"ApagarLog"_s) != 0, inteiroDe(rs.texto(u"NLeiturasM"_s), 1));
        }
    });
}

int Lista::AdicionarLinhaPoseidon(const QString &ip, int porta, const QString &mac, int tipoN, const QString &tipo,
                                  const QString &nome, const QString &modo, bool seleccionar, bool apagar,
                                  int nLeituras) {
    Linha l;
    l.SELECT = seleccionar ? u"SIM"_s : u"NAO"_s;
    l.UDP = modo == u"MAN" ? u"R"_s : QString();
    l.IP = ip;
    l.MAC = mac;
    l.PORTA = QString::number(porta);
    l.TIPO = tipo;
    l.DESCRICAO = (nome.isEmpty() ? ip : nome).left(maximoDoNome);
    l.TIPON = QString::number(tipoN);
    l.MODO = modo;
    l.NLEITURAS = QString::number(std::max(nLeituras, 1));
    l.BLNERASELOG = apagar ? u"1"_s : u"0"_s;
    m_linhas.push_back(l);
    return total();
}

Achado Lista::juntar(const Dispositivo &d) {
    if (const int numero = VerificarSeJaExisteNaLista(d.mac)) {
        linha(numero).UDP.clear();
        linha(numero).DESCRICAO = d.nome.left(maximoDoNome);
        return Achado::Conhecido;
    }
    if (!modHwGroup::temLog(d.modelo))
        return Achado::Ignorado;
    AdicionarLinhaPoseidon(d.endereco, d.porta, d.mac, d.modelo, nomeDoModelo(d.modelo), d.nome, u"AUT"_s, false, false,
                           1);
    return Achado::Novo;
}

Achado Lista::CarregarDispositivoRemoto(const QString &xml, const QString &endereco) {
    const DocumentoSetup documento = DocumentoSetup::ler(xml);
    if (!documento.lido() || documento.MAC.isEmpty())
        return Achado::Ignorado;
    if (VerificarSeJaExisteNaLista(documento.MAC) != 0)
        return Achado::Conhecido;
    const int modelo = documento.Model.toInt();
    if (!modHwGroup::temLog(modelo))
        return Achado::Ignorado;
    const quint16 porta = modPoseidons::TratarPortaDoEndereco(endereco);
    AdicionarLinhaPoseidon(modPoseidons::TratarEnderecoComPorta(endereco, false, porta), porta, documento.MAC, modelo,
                           nomeDoModelo(modelo), documento.DeviceName.right(maximoDoNome), u"MAN"_s, false, false, 1);
    return Achado::Novo;
}

int Lista::VerificarSeJaExisteNaLista(const QString &mac) const {
    if (mac.trimmed().isEmpty()) // tells no unit from another
        return 0;
    const auto achada = std::find_if(m_linhas.begin(), m_linhas.end(), [&](const Linha &l) {
        return l.MAC.trimmed().compare(mac.trimmed(), Qt::CaseInsensitive) == 0;
    });
    return achada == m_linhas.end() ? 0 : int(achada - m_linhas.begin()) + 1;
}

bool Lista::VerificarSeIPJaExiste(const QString &ip, int linha) const {
    for (int n = 1; n <= total(); ++n)
        if (n != linha && this->linha(n).IP.trimmed().compare(ip.trimmed(), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

bool Lista::algumaSeleccionada() const {
    return std::any_of(m_linhas.begin(), m_linhas.end(), [](const Linha &l) { return l.SELECT == u"SIM"; });
}

Alteracoes VerificarSeTemDeSeFazerAlteracoes(const QList<Dispositivo> &encontrados, const QString &ip,
                                             const QString &porta, const QString &mac, const QString &nome) {
    Alteracoes a;
    for (const Dispositivo &d : encontrados) {
        if (d.mac.trimmed().compare(mac.trimmed(), Qt::CaseInsensitive) != 0)
            continue;
        a.endereco = a.endereco || d.endereco != ip;
        a.porta = a.porta || QString::number(d.porta) != porta;
        a.nome = a.nome || d.nome.left(maximoDoNome) != nome;
    }
    return a;
}

QString ConfigurarZerosPortaIOcontroller(const QString &porta) {
    constexpr qsizetype algarismos = 5;
    return porta.isEmpty() || porta.size() > algarismos ? QString() : porta.rightJustified(algarismos, u'0');
}

void AdicionarBDPoseidons(const Registo &r) {
    Ligacao &bd = cnBD();
    std::optional<QString> nome;
    {
        Recordset rs = bd.consultar(u"SELECT Nome FROM Poseidons WHERE PoseidonIP = ?"_s, {r.ip});
        if (rs.avancar())
            nome = rs.texto(0);
    }
    if (!nome)
        bd.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, FirmwareV, Modelo, Mac, Porta, m, Timeout, Estado, "
                    "VistrelS, ApagarLog, NLeiturasM) VALUES (?,?,0,?,?,?,?,?,1,?,?,?)"_s,
                    {r.ip, r.nome, r.modelo, r.mac, r.porta, r.udp.trimmed() == u"R" ? u"MAN"_s : u"AUT"_s, tempoLimite,
                     r.vistrelS, r.apagar, r.nLeituras});
    else if (*nome != r.nome && !eInicioOuFim(r.nome, *nome))
        bd.executar(u"UPDATE Poseidons SET Nome = ? WHERE PoseidonIP = ?"_s, {r.nome, r.ip});
}

bool existeNaBD(const QString &ip) {
    Recordset rs = cnBD().consultar(u"SELECT 1 FROM Poseidons WHERE PoseidonIP = ?"_s, {ip});
    return rs.avancar();
}

bool MudarNomeBDPoseidons(const QString &ip, const QString &nome) {
    return Rotina("frmDescarregar2251.MudarNomeBDPoseidons", [&] {
        cnBD().executar(u"UPDATE Poseidons SET Nome = ? WHERE PoseidonIP = ?"_s, {nome, ip});
        return true;
    });
}

bool MudarIPPORTABDPoseidons(const QString &ip, const QString &novoIP, int porta) {
    return Rotina("frmDescarregar2251.MudarIPPORTABDPoseidons", [&] {
        cnBD().executar(u"UPDATE Poseidons SET PoseidonIP = ?, Porta = ? WHERE PoseidonIP = ?"_s, {novoIP, porta, ip});
        return true;
    });
}

bool SalvarMediasParaBD(const QString &ip, int nLeituras) {
    return Rotina("frmDescarregar2251.SalvarMediasParaBD", [&] {
        cnBD().executar(u"UPDATE Poseidons SET NLeiturasM = ? WHERE PoseidonIP = ?"_s, {nLeituras, ip});
        return true;
    });
}

bool SalvarchkApagarParaBD(const QString &ip, bool apagar) {
    return Rotina("frmDescarregar2251.SalvarchkApagarParaBD", [&] {
        cnBD().executar(u"UPDATE Poseidons SET ApagarLog = ? WHERE PoseidonIP = ?"_s, {apagar, ip});
        return true;
    });
}

} // namespace listaPoseidons
