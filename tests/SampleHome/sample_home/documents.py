"""What belongs to the user and must survive every button."""

from .workshop import KIB, Workshop

DOCUMENTS = (
    ("Documents/Letters/To the landlord.odt", 38 * KIB),
    ("Documents/Letters/Bewerbung – Größe 5.odt", 21 * KIB),
    ("Documents/Taxes/2025.ods", 64 * KIB),
    ("Documents/Taxes/cache/receipts.zip", 120 * KIB),
    ("Documents/Thesis/chapter 1.tex", 90 * KIB),
    ("Documents/Thesis/backup/chapter 1 old.tex", 88 * KIB),
    ("Desktop/todo.txt", 2 * KIB),
    ("Desktop/Holiday plan.ods", 30 * KIB),
    ("Downloads/ticket.pdf", 180 * KIB),
    ("Movies/First steps.mov", 900 * KIB),
    ("Music/Demo/01 Intro.flac", 700 * KIB),
    ("Pictures/2026/08/IMG_0001.jpg", 400 * KIB),
    ("Pictures/2026/08/IMG_0002.jpg", 410 * KIB),
    ("Videos/Concert.mkv", 800 * KIB),
    ("Public/Recipe.txt", 3 * KIB),
    ("Templates/Invoice.ods", 12 * KIB),
)

SETTINGS = (
    (".bashrc", "export EDITOR=nano\n"),
    (".bash_history", "ls\ncd Documents\n"),
    (".gitconfig", "[user]\n\tname = Ada\n"),
    (".ssh/id_ed25519", "a private key, made up\n"),
    (".ssh/known_hosts", "example.org ssh-ed25519 AAAA\n"),
    (".gnupg/private-keys-v1.d/0000.key", "a private key, made up\n"),
    (".config/user-dirs.dirs", 'XDG_DOCUMENTS_DIR="$HOME/Documents"\n'),
    (".config/mimeapps.list", "[Default Applications]\n"),
    (".config/Code/User/settings.json", "{}\n"),
    (".local/share/keyrings/login.keyring", "a keyring, made up\n"),
    (".local/share/evolution/mail/local/Inbox", "From ada@example.org\n"),
    ("Library/Keychains/login.keychain-db", "a keychain, made up\n"),
    ("Library/Mail/V10/Inbox.mbox/mbox", "From ada@example.org\n"),
    ("Library/Preferences/com.apple.finder.plist", "made up\n"),
)


def make(workshop: Workshop) -> None:
    for where, size in DOCUMENTS:
        workshop.document(where, size)
    for where, text in SETTINGS:
        workshop.document(where, text)
