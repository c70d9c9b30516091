"""Sentences in many languages, and the encodings that texts in them are found in."""

# Language: (encodings by the names Python has for them, sentences).
TEXTS = {
    "English": (["cp1252"], """\
The lease begins on the day named by the parties and runs for five years.
The tenant’s deposit of £450 is held until the end of the term.
“Premises” means the café on the ground floor of the building.
Ms Brontë signed the minutes of the board – with some reluctance.
The archive has been catalogued since 1987, and most of it was scanned last year.
Nothing in this clause takes away the rights of the owner.
He kept the letters of the curator, Señor Ibáñez, for forty years.
Copies are made on request; a copy costs 30 pence a page."""),
    "French": (["cp1252", "iso8859-15"], """\
Le bail prend effet à la date fixée par les parties.
Le preneur s'engage à régler le loyer au début de chaque trimestre.
Après la réunion, le président a résumé les décisions de l'assemblée générale.
Les archives de la préfecture ont été numérisées l'été dernier.
Cette clause a été supprimée à la demande du propriétaire.
Où se trouve l'original signé par maître Lefèvre ?
La société versera une indemnité égale à trois mois de salaire.
Votre dossier est complet, sauf pièce d'identité à fournir dès que possible."""),
    "German": (["cp1252", "iso8859-1"], """\
Der Mietvertrag läuft auf unbestimmte Zeit und kann schriftlich gekündigt werden.
Die Gesellschafter haben die Änderung der Satzung einstimmig beschlossen.
Für Schäden haftet der Käufer nur bei grober Fahrlässigkeit.
Das Gebäude gehört seit über zwanzig Jahren der Familie Schröder.
Bitte schicken Sie uns die fehlenden Unterlagen bis zum fünften März.
Die Größe der Wohnung beträgt ungefähr achtzig Quadratmeter.
Müller übernimmt während der Abwesenheit des Geschäftsführers die Geschäfte.
Im Protokoll heißt es, der Vorschlag sei zurückgestellt worden."""),
    "Spanish": (["cp1252", "iso8859-1"], """\
El contrato entrará en vigor el próximo año, según lo acordado.
La señora Núñez entregó los documentos en la oficina del notario.
¿Quién autorizó la publicación de las cartas del archivo?
La comisión aprobó por unanimidad la última versión del informe.
El inquilino pagará también los gastos de la comunidad y del jardín.
Mañana se reunirá el consejo de administración en Málaga.
No se admitirán reclamaciones después de quince días hábiles.
El depósito será devuelto íntegramente al término de la relación."""),
    "Danish": (["cp1252", "iso8859-1"], """\
Lejeren skal betale husleje forud hver måned.
Sagen blev udsat, fordi sagsøgeren ikke mødte op i retten.
Bestyrelsen vedtog årsregnskabet på mødet i København.
Huset er opført før krigen og bør sættes i stand.
Når kontrakten er underskrevet, kan den ikke længere ændres.
Brevene ligger på det kongelige bibliotek og må læses af alle.
Sælgeren har oplyst køberen om fejl og mangler ved ejendommen."""),
    "Polish": (["cp1250", "iso8859-2"], """\
Umowa wchodzi w życie z dniem podpisania przez obie strony.
Najemca zobowiązuje się płacić czynsz do piątego dnia każdego miesiąca.
Zarząd spółki podjął uchwałę większością głosów.
Świadek zeznał, że nie pamięta treści listu.
W archiwum państwowym znaleziono księgi z dziewiętnastego wieku.
Proszę przesłać brakujące załączniki jeszcze w tym tygodniu.
Sąd oddalił powództwo i obciążył powoda kosztami postępowania.
Właściciel może rozwiązać umowę, jeżeli lokator zalega z opłatami."""),
    "Czech": (["cp1250", "iso8859-2"], """\
Smlouva nabývá účinnosti dnem podpisu oběma stranami.
Nájemce je povinen platit nájemné do pátého dne každého měsíce.
Představenstvo schválilo účetní závěrku většinou hlasů.
Žalobce se k jednání nedostavil, proto soud řízení přerušil.
V zemském archivu jsou uloženy dopisy z předválečné doby.
Prosíme o zaslání chybějících příloh ještě tento týden.
Původní text byl změněn na žádost vlastníka domu."""),
    "Hungarian": (["cp1250", "iso8859-2"], """\
A szerződés az aláírás napján lép hatályba.
A bérlő köteles a bérleti díjat minden hónap ötödikéig megfizetni.
Az igazgatóság egyhangúlag elfogadta az éves beszámolót.
A tanú nem emlékezett a levél tartalmára.
Kérjük, küldje el a hiányzó mellékleteket még ezen a héten.
A levéltárban őrzött iratokat tavaly nyáron digitalizálták.
Az ügyvéd szerint a megállapodás érvényes és végrehajtható."""),
    "Russian": (["cp1251", "koi8-r", "iso8859-5", "cp866"], """\
Договор вступает в силу с момента подписания сторонами.
Арендатор обязуется вносить плату не позднее пятого числа каждого месяца.
Совет директоров утвердил годовой отчёт большинством голосов.
Свидетель показал, что не помнит содержания письма.
В государственном архиве хранятся дела прошлого века.
Просим прислать недостающие документы на этой неделе.
Суд отказал в удовлетворении иска и взыскал расходы с истца.
По просьбе владельца этот пункт был исключён из текста."""),
    "Bulgarian": (["cp1251", "iso8859-5"], """\
Договорът влиза в сила от деня на подписването му.
Наемателят се задължава да плаща наема до пето число на месеца.
Управителният съвет прие годишния отчет с мнозинство.
Свидетелят не си спомня съдържанието на писмото.
В държавния архив се пазят книги от миналия век.
Моля, изпратете липсващите документи още тази седмица.
Съдът отхвърли иска и осъди ищеца да заплати разноските."""),
    "Greek": (["cp1253", "iso8859-7"], """\
Η σύμβαση τίθεται σε ισχύ από την ημέρα της υπογραφής της.
Ο μισθωτής υποχρεούται να καταβάλλει το μίσθωμα κάθε μήνα.
Το διοικητικό συμβούλιο ενέκρινε ομόφωνα τον ετήσιο απολογισμό.
Ο μάρτυρας δεν θυμάται το περιεχόμενο της επιστολής.
Στο αρχείο φυλάσσονται έγγραφα του περασμένου αιώνα.
Παρακαλούμε να στείλετε τα δικαιολογητικά μέσα στην εβδομάδα.
Το δικαστήριο απέρριψε την αγωγή και επέβαλε τα έξοδα."""),
    "Turkish": (["cp1254", "iso8859-9"], """\
Sözleşme imzalandığı tarihte yürürlüğe girer.
Kiracı, kira bedelini her ayın beşinci gününe kadar ödemekle yükümlüdür.
Yönetim kurulu yıllık raporu oy birliğiyle kabul etti.
Tanık, mektubun içeriğini hatırlamadığını söyledi.
Arşivde geçen yüzyıldan kalma belgeler saklanmaktadır.
Eksik ekleri lütfen bu hafta içinde gönderiniz.
Mahkeme davayı reddetti ve masrafları davacıya yükledi."""),
    "Hebrew": (["cp1255"], """\
ההסכם ייכנס לתוקף ביום חתימתו על ידי הצדדים.
השוכר מתחייב לשלם את דמי השכירות בתחילת כל חודש.
הדירקטוריון אישר את הדוח השנתי ברוב קולות.
העד אמר שאינו זוכר את תוכן המכתב.
בארכיון המדינה נשמרים מסמכים מן המאה הקודמת.
נא לשלוח את הנספחים החסרים עוד השבוע.
בית המשפט דחה את התביעה וחייב את התובע בהוצאות."""),
    "Thai": (["cp874"], """\
สัญญานี้มีผลบังคับใช้ตั้งแต่วันที่ลงนาม
ผู้เช่าตกลงชำระค่าเช่าภายในวันที่ห้าของทุกเดือน
คณะกรรมการมีมติเห็นชอบรายงานประจำปี
พยานให้การว่าจำเนื้อหาของจดหมายไม่ได้
กรุณาส่งเอกสารที่ยังขาดอยู่ภายในสัปดาห์นี้
ศาลยกฟ้องและให้โจทก์ชำระค่าใช้จ่าย"""),
    "Japanese": (["cp932", "euc_jp"], """\
本契約は、署名の日から効力を生じるものとする。
借主は、毎月五日までに賃料を支払わなければならない。
取締役会は、年次報告書を全員一致で承認しました。
証人は手紙の内容を覚えていないと述べた。
県の文書館には、明治時代の書類が保存されています。
不足している資料を今週中にお送りください。
裁判所は原告の請求を棄却し、訴訟費用を原告の負担とした。
カタカナのデータも、ファイルの中にそのまま残ります。"""),
    "Chinese, simplified": (["gbk"], """\
本合同自双方签字之日起生效。
承租人应当在每月五日以前支付租金。
董事会一致通过了年度报告。
证人说他不记得信的内容了。
省档案馆保存着上个世纪的文件。
请在本周内寄来缺少的附件。
法院驳回了原告的请求，诉讼费用由原告承担。
根据业主的要求，这一条款已经删除。"""),
    "Chinese, traditional": (["big5"], """\
本合約自雙方簽字之日起生效。
承租人應於每月五日以前支付租金。
董事會一致通過了年度報告。
證人說他不記得信的內容了。
檔案館保存著上個世紀的文件。
請在本週內寄來缺少的附件。
法院駁回原告的請求，訴訟費用由原告負擔。
依照業主的要求，這一條款已經刪除。"""),
    "Korean": (["euc_kr"], """\
이 계약은 양 당사자가 서명한 날부터 효력이 발생한다.
임차인은 매월 오일까지 임대료를 지급하여야 한다.
이사회는 연차 보고서를 만장일치로 승인하였다.
증인은 편지의 내용을 기억하지 못한다고 말했다.
기록 보관소에는 지난 세기의 문서가 보존되어 있습니다.
부족한 서류를 이번 주 안으로 보내 주시기 바랍니다.
법원은 원고의 청구를 기각하고 소송 비용을 부담하게 하였다."""),
}
