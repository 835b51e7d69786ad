<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>AddProviderSheet</name>
    <message>
        <source>Add Provider</source>
        <translation>Anbieter hinzufügen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Base URL (e.g. http://localhost:9117/api/v2.0/indexers/all/results/torznab/api)</source>
        <translation>Basis-URL (z. B. http://localhost:9117/api/v2.0/indexers/all/results/torznab/api)</translation>
    </message>
    <message>
        <source>API key (optional)</source>
        <translation>API-Schlüssel (optional)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
</context>
<context>
    <name>Alert</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>AudioTracks</name>
    <message>
        <source>Track %1</source>
        <translation>Spur %1</translation>
    </message>
</context>
<context>
    <name>ByteCount</name>
    <message>
        <source>Zero KB</source>
        <translation>0 KB</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>.</source>
        <comment>decimal sign</comment>
        <translation>,</translation>
    </message>
</context>
<context>
    <name>CatalogSearchPage</name>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Search Vidarium films, documentaries, shorts…</source>
        <translation>Filme, Dokumentationen und Kurzfilme auf Vidarium suchen&#xa0;…</translation>
    </message>
    <message>
        <source>Search the Internet Archive&apos;s public video catalog. For torrent sources, use Torrent Search.</source>
        <translation>Durchsucht den öffentlichen Videokatalog des Internet Archive. Torrent-Quellen findet die Torrent-Suche.</translation>
    </message>
    <message>
        <source>Search</source>
        <comment>to press</comment>
        <translation>Suchen</translation>
    </message>
</context>
<context>
    <name>ClearHistoryAlert</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Clear History</source>
        <translation>Verlauf löschen</translation>
    </message>
    <message>
        <source>Vellum forgets what you have watched and where you stopped. No file is removed.</source>
        <translation>Vellum vergisst, was bis zu welcher Stelle angesehen wurde. Es werden keine Dateien entfernt.</translation>
    </message>
    <message>
        <source>Clear the watch history?</source>
        <translation>Wiedergabeverlauf löschen?</translation>
    </message>
</context>
<context>
    <name>ContentCoding</name>
    <message>
        <source>The answer cannot be unpacked</source>
        <translation>Die Antwort lässt sich nicht entpacken</translation>
    </message>
</context>
<context>
    <name>DiscoverPage</name>
    <message>
        <source>Discover</source>
        <translation>Entdecken</translation>
    </message>
    <message>
        <source>Pick a collection to browse real Vidarium catalog entries.</source>
        <translation>Eine Sammlung auswählen, um echte Einträge des Vidarium-Katalogs zu sehen.</translation>
    </message>
    <message>
        <source>Nothing to show in this collection.</source>
        <translation>In dieser Sammlung gibt es nichts anzuzeigen.</translation>
    </message>
</context>
<context>
    <name>DownloadRow</name>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Cancel / remove</source>
        <translation>Abbrechen / entfernen</translation>
    </message>
</context>
<context>
    <name>DownloadsPage</name>
    <message>
        <source>Clear Finished</source>
        <translation>Fertige entfernen</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>No active downloads.</source>
        <translation>Keine aktiven Downloads.</translation>
    </message>
    <message>
        <source>Downloads restart from scratch (or from pause) if the app quits mid-transfer; finished files are always kept.</source>
        <translation>Wird die App während einer Übertragung beendet, beginnen Downloads von vorn (oder ab der Pause). Fertige Dateien bleiben immer erhalten.</translation>
    </message>
    <message>
        <source>Torrent streams &amp; seeding</source>
        <translation>Torrent-Streams &amp; Seeding</translation>
    </message>
    <message>
        <source>No torrents are running.</source>
        <translation>Es laufen keine Torrents.</translation>
    </message>
</context>
<context>
    <name>FailureCard</name>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>Field</name>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner auswählen</translation>
    </message>
</context>
<context>
    <name>FolderRow</name>
    <message>
        <source>Choose…</source>
        <translation>Auswählen&#xa0;…</translation>
    </message>
    <message>
        <source>%1: choose</source>
        <translation>%1: auswählen</translation>
    </message>
</context>
<context>
    <name>HeaderCell</name>
    <message>
        <source>Sorted descending</source>
        <translation>Absteigend sortiert</translation>
    </message>
    <message>
        <source>Sorted ascending</source>
        <translation>Aufsteigend sortiert</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Continue Watching</source>
        <translation>Weiterschauen</translation>
    </message>
    <message>
        <source>Search Suggestions</source>
        <translation>Suchvorschläge</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>The catalog has nothing to show right now.</source>
        <translation>Der Katalog hat gerade nichts anzuzeigen.</translation>
    </message>
    <message>
        <source>Loading catalog…</source>
        <translation>Katalog wird geladen&#xa0;…</translation>
    </message>
    <message>
        <source>Featured Public-Domain Films</source>
        <translation>Ausgewählte gemeinfreie Filme</translation>
    </message>
    <message>
        <source>Popular on Vidarium This Week</source>
        <translation>Diese Woche beliebt auf Vidarium</translation>
    </message>
    <message>
        <source>Recently Viewed</source>
        <translation>Zuletzt angesehen</translation>
    </message>
    <message>
        <source>Recently Added Local Content</source>
        <translation>Zuletzt hinzugefügte lokale Inhalte</translation>
    </message>
</context>
<context>
    <name>HttpFileTransfer</name>
    <message>
        <source>The server sent something else than the file</source>
        <translation>Der Server hat etwas anderes als die Datei gesendet</translation>
    </message>
    <message>
        <source>Not enough free disk space.</source>
        <translation>Nicht genügend freier Speicherplatz.</translation>
    </message>
    <message>
        <source>The server ended the transfer early</source>
        <translation>Der Server hat die Übertragung vorzeitig beendet</translation>
    </message>
</context>
<context>
    <name>InspectorFile</name>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>InspectorFiles</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>ItemFileRow</name>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Save to Downloads</source>
        <translation>In Downloads speichern</translation>
    </message>
</context>
<context>
    <name>ItemFooter</name>
    <message>
        <source>Inspect Vidarium .torrent</source>
        <translation>.torrent von Vidarium ansehen</translation>
    </message>
</context>
<context>
    <name>ItemHeader</name>
    <message>
        <source>View on Vidarium</source>
        <translation>Auf Vidarium ansehen</translation>
    </message>
    <message>
        <source>Inspecting files…</source>
        <translation>Dateien werden abgefragt&#xa0;…</translation>
    </message>
</context>
<context>
    <name>ItemLicence</name>
    <message>
        <source>License:</source>
        <translation>Lizenz:</translation>
    </message>
    <message>
        <source>No license information provided by the catalog. Don&apos;t assume this item is public domain.</source>
        <translation>Der Katalog nennt keine Lizenz. Der Eintrag ist nicht ohne Weiteres gemeinfrei.</translation>
    </message>
</context>
<context>
    <name>ItemListHead</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>LibraryPage</name>
    <message>
        <source>Clear History</source>
        <translation>Verlauf löschen</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Nothing watched yet.</source>
        <translation>Noch nichts angesehen.</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Nothing saved yet. Download a file from an Vidarium item to keep it here.</source>
        <translation>Noch nichts gespeichert. Heruntergeladene Dateien eines Vidarium-Eintrags bleiben hier erhalten.</translation>
    </message>
    <message>
        <source>Saved on this Mac</source>
        <translation>Auf diesem Gerät gespeichert</translation>
    </message>
</context>
<context>
    <name>LibraryRow</name>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Remove from history</source>
        <translation>Aus dem Verlauf entfernen</translation>
    </message>
</context>
<context>
    <name>LinkOpener</name>
    <message>
        <source>That doesn&apos;t look like a valid magnet link.</source>
        <translation>Das sieht nicht nach einem gültigen Magnet-Link aus.</translation>
    </message>
    <message>
        <source>No app on this Mac is registered to open %1. Install a BitTorrent client to use it.</source>
        <translation>Auf diesem Gerät ist keine App zum Öffnen von %1 eingerichtet. Dazu einen BitTorrent-Client installieren.</translation>
    </message>
    <message>
        <source>magnet links</source>
        <translation>Magnet-Links</translation>
    </message>
    <message>
        <source>.torrent files</source>
        <translation>.torrent-Dateien</translation>
    </message>
    <message>
        <source>Couldn&apos;t read torrent: %1</source>
        <translation>Der Torrent konnte nicht gelesen werden: %1</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Torrent files (%1)</source>
        <translation>Torrent-Dateien (%1)</translation>
    </message>
    <message>
        <source>All files (%1)</source>
        <translation>Alle Dateien (%1)</translation>
    </message>
    <message>
        <source>Open .torrent</source>
        <translation>.torrent öffnen</translation>
    </message>
    <message>
        <source>Subtitles (%1)</source>
        <translation>Untertitel (%1)</translation>
    </message>
    <message>
        <source>Choose subtitles</source>
        <translation>Untertitel auswählen</translation>
    </message>
    <message>
        <source>Try anyway</source>
        <translation>Trotzdem versuchen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>This torrent reports 0 seeders, so streaming may never start. You can try anyway.</source>
        <translation>Dieser Torrent meldet 0 Seeder; das Streaming beginnt möglicherweise nie. Ein Versuch ist trotzdem möglich.</translation>
    </message>
    <message>
        <source>No seeders reported</source>
        <translation>Keine Seeder gemeldet</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>MiniPlayer</name>
    <message>
        <source>Back ten seconds</source>
        <translation>Zehn Sekunden zurück</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Forward ten seconds</source>
        <translation>Zehn Sekunden vor</translation>
    </message>
    <message>
        <source>Expand</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Close player</source>
        <translation>Player schließen</translation>
    </message>
</context>
<context>
    <name>NetError</name>
    <message>
        <source>HTTP %1</source>
        <translation>HTTP %1</translation>
    </message>
    <message>
        <source>Invalid URL</source>
        <translation>Ungültige URL</translation>
    </message>
    <message>
        <source>Empty response</source>
        <translation>Leere Antwort</translation>
    </message>
    <message>
        <source>The answer is too large</source>
        <translation>Die Antwort ist zu groß</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>Zeitüberschreitung der Anfrage</translation>
    </message>
</context>
<context>
    <name>Picker</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>PlayCell</name>
    <message>
        <source>Now playing</source>
        <translation>Läuft gerade</translation>
    </message>
    <message>
        <source>Stream now</source>
        <translation>Jetzt streamen</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Startet</translation>
    </message>
    <message>
        <source>Choose streaming quality</source>
        <translation>Streaming-Qualität auswählen</translation>
    </message>
</context>
<context>
    <name>PlaybackMenu</name>
    <message>
        <source>Play / Pause</source>
        <translation>Wiedergabe / Pause</translation>
    </message>
    <message>
        <source>Skip Back 10s</source>
        <translation>10&#xa0;s zurück</translation>
    </message>
    <message>
        <source>Skip Forward 10s</source>
        <translation>10&#xa0;s vor</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stummschalten</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
</context>
<context>
    <name>PlayerControls</name>
    <message>
        <source>Back ten seconds</source>
        <translation>Zehn Sekunden zurück</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Forward ten seconds</source>
        <translation>Zehn Sekunden vor</translation>
    </message>
    <message>
        <source>Audio track</source>
        <translation>Tonspur</translation>
    </message>
    <message>
        <source>Playback speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>Aspect ratio</source>
        <translation>Seitenverhältnis</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
</context>
<context>
    <name>PlayerScreen</name>
    <message>
        <source>Playback error</source>
        <translation>Wiedergabefehler</translation>
    </message>
</context>
<context>
    <name>PlayerTimeline</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>PlayerTopBar</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
</context>
<context>
    <name>PlayerVolume</name>
    <message>
        <source>Unmute</source>
        <translation>Ton einschalten</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stummschalten</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
</context>
<context>
    <name>PosterCard</name>
    <message>
        <source>Watched</source>
        <translation>Angesehen</translation>
    </message>
</context>
<context>
    <name>PosterGrid</name>
    <message>
        <source>Films</source>
        <translation>Filme</translation>
    </message>
</context>
<context>
    <name>PosterTable</name>
    <message>
        <source>Films</source>
        <translation>Filme</translation>
    </message>
</context>
<context>
    <name>ProviderClient</name>
    <message>
        <source>DNS lookup failed</source>
        <translation>DNS-Abfrage fehlgeschlagen</translation>
    </message>
    <message>
        <source>connection refused</source>
        <translation>Verbindung abgelehnt</translation>
    </message>
    <message>
        <source>timed out</source>
        <translation>Zeitüberschreitung</translation>
    </message>
    <message>
        <source>plain http is blocked by the system; use https</source>
        <translation>einfaches http wird vom System blockiert; https verwenden</translation>
    </message>
    <message>
        <source>TLS error</source>
        <translation>TLS-Fehler</translation>
    </message>
    <message>
        <source>no internet connection</source>
        <translation>keine Internetverbindung</translation>
    </message>
    <message>
        <source>HTTP %1</source>
        <translation>HTTP %1</translation>
    </message>
    <message>
        <source>returned a web page</source>
        <translation>lieferte eine Webseite</translation>
    </message>
    <message>
        <source>returned a non-API response</source>
        <translation>lieferte keine API-Antwort</translation>
    </message>
    <message>
        <source>invalid address</source>
        <translation>ungültige Adresse</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
</context>
<context>
    <name>ProviderEditor</name>
    <message>
        <source>Base URL (https://…)</source>
        <translation>Basis-URL (https://…)</translation>
    </message>
    <message>
        <source>Enter a full http:// or https:// address with a host.</source>
        <translation>Eine vollständige Adresse mit http:// oder https:// und Host eingeben.</translation>
    </message>
    <message>
        <source>Plain http is less private and may be blocked by macOS. Prefer https.</source>
        <translation>Einfaches http ist weniger privat und kann von macOS blockiert werden. Besser https verwenden.</translation>
    </message>
    <message>
        <source>Mirrors (one per line, tried in order if the address above fails)</source>
        <translation>Mirrors (einer pro Zeile; der Reihe nach versucht, wenn die Adresse oben versagt)</translation>
    </message>
    <message>
        <source>Ignored (not valid http(s) addresses): %1</source>
        <translation>Ignoriert (keine gültigen http(s)-Adressen): %1</translation>
    </message>
    <message>
        <source>API key (optional)</source>
        <translation>API-Schlüssel (optional)</translation>
    </message>
    <message>
        <source>Test Connection</source>
        <translation>Verbindung testen</translation>
    </message>
    <message>
        <source>Last working: %1</source>
        <translation>Zuletzt erreichbar: %1</translation>
    </message>
</context>
<context>
    <name>ProviderError</name>
    <message>
        <source>%1 has no address yet. Set one in Settings → Providers</source>
        <translation>%1 hat noch keine Adresse. Festlegen unter Einstellungen → Anbieter</translation>
    </message>
    <message>
        <source>%1 unreachable at %2. Check the address in Settings → Providers</source>
        <translation>%1 ist unter %2 nicht erreichbar. Adresse prüfen unter Einstellungen → Anbieter</translation>
    </message>
    <message>
        <source>Provider returned a web page instead of API data (%1 at %2). Try another mirror in Settings → Providers</source>
        <translation>Der Anbieter lieferte eine Webseite statt API-Daten (%1 unter %2). Anderen Mirror versuchen unter Einstellungen → Anbieter</translation>
    </message>
    <message>
        <source>%1 at %2 didn&apos;t return API data. Check the address in Settings → Providers</source>
        <translation>%1 lieferte unter %2 keine API-Daten. Adresse prüfen unter Einstellungen → Anbieter</translation>
    </message>
    <message>
        <source>%1 answered, but not in the expected API format. Check the provider type and address in Settings → Providers</source>
        <translation>%1 hat geantwortet, aber nicht im erwarteten API-Format. Typ und Adresse prüfen unter Einstellungen → Anbieter</translation>
    </message>
</context>
<context>
    <name>ProviderHealthChecker</name>
    <message>
        <source>Reachable, API format OK</source>
        <translation>Erreichbar, API-Format in Ordnung</translation>
    </message>
    <message>
        <source>Reachable, but the response doesn&apos;t match the expected API format</source>
        <translation>Erreichbar, aber die Antwort entspricht nicht dem erwarteten API-Format</translation>
    </message>
    <message>
        <source>Provider returned a web page instead of API data</source>
        <translation>Der Anbieter lieferte eine Webseite statt API-Daten</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Built-in catalog</source>
        <translation>Integrierter Katalog</translation>
    </message>
    <message>
        <source>Vidarium catalog uses a fixed built-in host</source>
        <translation>Der Vidarium-Katalog hat einen fest eingebauten Host</translation>
    </message>
    <message>
        <source>(no address)</source>
        <translation>(keine Adresse)</translation>
    </message>
    <message>
        <source>Not a valid http(s) address</source>
        <translation>Keine gültige http(s)-Adresse</translation>
    </message>
</context>
<context>
    <name>ProviderKind</name>
    <message>
        <source>Vidarium</source>
        <translation>Vidarium</translation>
    </message>
    <message>
        <source>ApiBay-compatible JSON</source>
        <translation>ApiBay-kompatibles JSON</translation>
    </message>
    <message>
        <source>YTS-compatible JSON</source>
        <translation>YTS-kompatibles JSON</translation>
    </message>
    <message>
        <source>Torznab (Jackett/Prowlarr)</source>
        <translation>Torznab (Jackett/Prowlarr)</translation>
    </message>
</context>
<context>
    <name>ProviderRow</name>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
</context>
<context>
    <name>ProviderSection</name>
    <message>
        <source>Metadata Providers</source>
        <translation>Metadaten-Anbieter</translation>
    </message>
    <message>
        <source>Add Provider…</source>
        <translation>Anbieter hinzufügen&#xa0;…</translation>
    </message>
    <message>
        <source>Providers are queried only when you search, and only for metadata. Third-party index availability and legality vary by region; you&apos;re responsible for what you access.</source>
        <translation>Anbieter werden nur bei einer Suche und nur nach Metadaten gefragt. Verfügbarkeit und Rechtslage fremder Indizes unterscheiden sich je nach Region; der Zugriff geschieht auf eigene Verantwortung.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Its addresses and its API key are forgotten.</source>
        <translation>Seine Adressen und sein API-Schlüssel werden vergessen.</translation>
    </message>
    <message>
        <source>Remove “%1”?</source>
        <translation>„%1“ entfernen?</translation>
    </message>
</context>
<context>
    <name>ResultCells</name>
    <message>
        <source>%1, %2, %3 seeds</source>
        <translation>%1, %2, %3 Seeder</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>Aktionen</translation>
    </message>
</context>
<context>
    <name>ResultHeader</name>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Seeds</source>
        <translation>Seeder</translation>
    </message>
    <message>
        <source>Peers</source>
        <translation>Peers</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
</context>
<context>
    <name>ResultTable</name>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>Choose streaming quality</source>
        <translation>Streaming-Qualität auswählen</translation>
    </message>
</context>
<context>
    <name>SearchFields</name>
    <message>
        <source>Search title or keywords across enabled providers…</source>
        <translation>Titel oder Stichwörter bei allen aktiven Anbietern suchen&#xa0;…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Paste magnet link</source>
        <translation>Magnet-Link einfügen</translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation>Ansehen</translation>
    </message>
    <message>
        <source>Open .torrent…</source>
        <translation>.torrent öffnen&#xa0;…</translation>
    </message>
</context>
<context>
    <name>SearchFilters</name>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Max size</source>
        <translation>Max. Größe</translation>
    </message>
</context>
<context>
    <name>SearchStatus</name>
    <message>
        <source>Open Settings</source>
        <translation>Einstellungen öffnen</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Vidarium content is streamed directly from vidarium. Licensing is shown when the catalog provides it; don&apos;t assume an item is public domain.</source>
        <translation>Vidarium-Inhalte werden direkt von Vidarium gestreamt. Lizenzen werden angezeigt, wenn der Katalog sie nennt; ein Eintrag ist nicht ohne Weiteres gemeinfrei.</translation>
    </message>
    <message>
        <source>About Sources</source>
        <translation>Über die Quellen</translation>
    </message>
</context>
<context>
    <name>Sheet</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>Shelf</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Weiter</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Sections</source>
        <translation>Bereiche</translation>
    </message>
    <message>
        <source>Playback</source>
        <translation>Wiedergabe</translation>
    </message>
</context>
<context>
    <name>SourcesButton</name>
    <message>
        <source>Sources</source>
        <translation>Quellen</translation>
    </message>
</context>
<context>
    <name>Spinner</name>
    <message>
        <source>Loading</source>
        <translation>Lädt</translation>
    </message>
</context>
<context>
    <name>StayAwake</name>
    <message>
        <source>A video is playing</source>
        <translation>Ein Video wird abgespielt</translation>
    </message>
</context>
<context>
    <name>StorageSection</name>
    <message>
        <source>Cleanup only touches the cache folder. Files in the saved downloads folder are never removed automatically.</source>
        <translation>Aufgeräumt wird nur der Cache-Ordner. Dateien im Ordner für gespeicherte Downloads werden nie automatisch entfernt.</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Cache folder</source>
        <translation>Cache-Ordner</translation>
    </message>
    <message>
        <source>Saved downloads folder</source>
        <translation>Ordner für gespeicherte Downloads</translation>
    </message>
    <message>
        <source>Clean Now</source>
        <translation>Jetzt aufräumen</translation>
    </message>
    <message>
        <source>Clear Cache</source>
        <translation>Cache leeren</translation>
    </message>
    <message>
        <source>Watch history</source>
        <translation>Wiedergabeverlauf</translation>
    </message>
    <message>
        <source>Clear Watch History</source>
        <translation>Wiedergabeverlauf löschen</translation>
    </message>
</context>
<context>
    <name>StreamChoices</name>
    <message>
        <source>Choose what to play</source>
        <translation>Was soll wiedergegeben werden?</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>StreamFailure</name>
    <message>
        <source>This result has no magnet link or torrent file to stream.</source>
        <translation>Dieses Ergebnis hat weder einen Magnet-Link noch eine Torrent-Datei zum Streamen.</translation>
    </message>
    <message>
        <source>Couldn&apos;t download the .torrent file: %1</source>
        <translation>Die .torrent-Datei konnte nicht heruntergeladen werden: %1</translation>
    </message>
    <message>
        <source>Couldn&apos;t start the local streaming server.</source>
        <translation>Der lokale Streaming-Server konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>Couldn&apos;t fetch the torrent&apos;s metadata within 60 seconds. It may have no active peers, or trackers may be unreachable.</source>
        <translation>Die Metadaten des Torrents ließen sich nicht innerhalb von 60 Sekunden laden. Möglicherweise gibt es keine aktiven Peers, oder die Tracker sind nicht erreichbar.</translation>
    </message>
    <message>
        <source>No playable video file was found in this torrent.</source>
        <translation>In diesem Torrent wurde keine abspielbare Videodatei gefunden.</translation>
    </message>
    <message>
        <source>The stream stalled and no peers are connected. The swarm may be dead.</source>
        <translation>Der Stream ist zum Stillstand gekommen, und es sind keine Peers verbunden. Möglicherweise ist der Schwarm verwaist.</translation>
    </message>
    <message>
        <source>This video&apos;s format or codec isn&apos;t supported by the built-in player, and no external player (mpv, VLC) was found. Install mpv (brew install mpv) to play it.</source>
        <translation>Der integrierte Player unterstützt Format oder Codec dieses Videos nicht, und es wurde kein externer Player (mpv, VLC) gefunden. Zur Wiedergabe mpv installieren (brew install mpv).</translation>
    </message>
    <message>
        <source>Not enough free disk space for the streaming cache (less than 300 MB free).</source>
        <translation>Nicht genügend freier Speicherplatz für den Streaming-Cache (weniger als 300 MB frei).</translation>
    </message>
    <message>
        <source>Not enough free disk space for the cache (%1 needed).</source>
        <translation>Nicht genügend freier Speicherplatz für den Cache (%1 erforderlich).</translation>
    </message>
</context>
<context>
    <name>StreamProgress</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>StreamState</name>
    <message>
        <source>Stream stalled — no peers connected</source>
        <translation>Stream steht still – keine Peers verbunden</translation>
    </message>
    <message>
        <source>Waiting for data from peers…</source>
        <translation>Warten auf Daten von Peers&#xa0;…</translation>
    </message>
</context>
<context>
    <name>StreamTexts</name>
    <message>
        <source>Connecting to peers…</source>
        <translation>Verbindung zu Peers wird hergestellt&#xa0;…</translation>
    </message>
    <message>
        <source>Fetching metadata…</source>
        <translation>Metadaten werden geladen&#xa0;…</translation>
    </message>
    <message>
        <source>Selecting file…</source>
        <translation>Datei wird ausgewählt&#xa0;…</translation>
    </message>
    <message>
        <source>Buffering %1%</source>
        <translation>Puffert %1&#xa0;%</translation>
    </message>
    <message>
        <source>Playing</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>%1 peer · ↓ %2/s · ↑ %3/s</source>
        <translation>%1 Peer · ↓ %2/s · ↑ %3/s</translation>
    </message>
    <message>
        <source>%1 peers · ↓ %2/s · ↑ %3/s</source>
        <translation>%1 Peers · ↓ %2/s · ↑ %3/s</translation>
    </message>
    <message numerus="yes">
        <source>%n peers · ↓ %1/s · ↑ %2/s · uploaded %3</source>
        <translation>
            <numerusform>%n Peer · ↓ %1/s · ↑ %2/s · hochgeladen: %3</numerusform>
            <numerusform>%n Peers · ↓ %1/s · ↑ %2/s · hochgeladen: %3</numerusform>
        </translation>
    </message>
    <message>
        <source>Buffering</source>
        <translation>Puffert</translation>
    </message>
    <message>
        <source>Buffering…</source>
        <translation>Puffert&#xa0;…</translation>
    </message>
</context>
<context>
    <name>SubtitleMenu</name>
    <message>
        <source>Subtitles</source>
        <translation>Untertitel</translation>
    </message>
    <message>
        <source>Choose File…</source>
        <translation>Datei auswählen&#xa0;…</translation>
    </message>
</context>
<context>
    <name>TorrentFile</name>
    <message>
        <source>Not a valid .torrent file</source>
        <translation>Keine gültige .torrent-Datei</translation>
    </message>
    <message>
        <source>Unnamed torrent</source>
        <translation>Unbenannter Torrent</translation>
    </message>
</context>
<context>
    <name>TorrentInspector</name>
    <message>
        <source>Magnet links carry no file list; it&apos;s fetched by your torrent client once it joins the swarm.</source>
        <translation>Magnet-Links enthalten keine Dateiliste; der Torrent-Client lädt sie, sobald er dem Schwarm beitritt.</translation>
    </message>
    <message>
        <source>&quot;Open in Torrent App&quot; hands the link to the BitTorrent client you&apos;ve chosen on this Mac. Use Play in the results list to stream with the built-in engine instead.</source>
        <translation>„In Torrent-App öffnen“ übergibt den Link an den BitTorrent-Client, der auf diesem Gerät eingestellt ist. „Abspielen“ in der Ergebnisliste streamt stattdessen mit der integrierten Engine.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Copy Magnet</source>
        <translation>Magnet-Link kopieren</translation>
    </message>
    <message>
        <source>Open in Torrent App</source>
        <translation>In Torrent-App öffnen</translation>
    </message>
    <message>
        <source>Open .torrent in App</source>
        <translation>.torrent in App öffnen</translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation>Im Ordner zeigen</translation>
    </message>
</context>
<context>
    <name>TorrentRow</name>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Stop %1</source>
        <translation>%1 stoppen</translation>
    </message>
</context>
<context>
    <name>TorrentSearchPage</name>
    <message>
        <source>Torrent Search</source>
        <translation>Torrent-Suche</translation>
    </message>
    <message>
        <source>Searching only reads metadata; a torrent starts only when you press Play (which also uploads to peers while it runs — see Settings). Results come from third-party indexes; their legality isn&apos;t verified. Only use content you have the right to access.</source>
        <translation>Eine Suche liest nur Metadaten; ein Torrent startet erst mit der Wiedergabe (die währenddessen auch an Peers hochlädt – siehe Einstellungen). Ergebnisse stammen aus fremden Indizes; ihre Rechtmäßigkeit wird nicht geprüft. Nur Inhalte nutzen, für die eine Berechtigung besteht.</translation>
    </message>
    <message>
        <source>No providers enabled — enable some in Settings.</source>
        <translation>Keine Anbieter aktiv – in den Einstellungen lassen sie sich einschalten.</translation>
    </message>
</context>
<context>
    <name>TorrentsSection</name>
    <message>
        <source>Pressing Play streams the torrent with the built-in engine, which also uploads pieces to other peers while it runs. Peer discovery uses trackers only (no DHT). Unless kept, the cache for a stream is deleted when you close it. Make sure you have the right to access the content.</source>
        <translation>Die Wiedergabe streamt den Torrent mit der integrierten Engine, die währenddessen auch Teile an andere Peers hochlädt. Peers werden nur über Tracker gefunden (kein DHT). Der Cache eines Streams wird beim Schließen gelöscht, sofern er nicht behalten wird. Nur Inhalte nutzen, für die eine Berechtigung besteht.</translation>
    </message>
    <message>
        <source>Torrents &amp; Seeding</source>
        <translation>Torrents &amp; Seeding</translation>
    </message>
    <message>
        <source>Preferred streaming quality</source>
        <translation>Bevorzugte Streaming-Qualität</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Stop seeding when the player closes</source>
        <translation>Seeding beim Schließen des Players beenden</translation>
    </message>
    <message>
        <source>Keep downloaded data after playback</source>
        <translation>Heruntergeladene Daten nach der Wiedergabe behalten</translation>
    </message>
</context>
<context>
    <name>Torznab</name>
    <message>
        <source>Indexer error</source>
        <translation>Fehler des Indexers</translation>
    </message>
    <message>
        <source>The document is nested too deeply</source>
        <translation>Das Dokument ist zu tief verschachtelt</translation>
    </message>
    <message>
        <source>The document is not in its encoding</source>
        <translation>Das Dokument entspricht nicht seiner Kodierung</translation>
    </message>
    <message>
        <source>The document has a DTD, which is not read</source>
        <translation>Das Dokument hat eine DTD; sie wird nicht gelesen</translation>
    </message>
    <message>
        <source>The document has an element with too many attributes</source>
        <translation>Das Dokument hat ein Element mit zu vielen Attributen</translation>
    </message>
</context>
<context>
    <name>ViewModeToggle</name>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>List</source>
        <translation>Liste</translation>
    </message>
</context>
<context>
    <name>YTSProvider</name>
    <message>
        <source>Untitled</source>
        <translation>Ohne Titel</translation>
    </message>
</context>
<context>
    <name>vellum::CatalogState</name>
    <message>
        <source>Feature Films</source>
        <translation>Spielfilme</translation>
    </message>
    <message>
        <source>Silent Films</source>
        <translation>Stummfilme</translation>
    </message>
    <message>
        <source>Film Noir</source>
        <translation>Film noir</translation>
    </message>
    <message>
        <source>Sci-Fi &amp; Horror</source>
        <translation>Science-Fiction &amp; Horror</translation>
    </message>
    <message>
        <source>Classic TV</source>
        <translation>TV-Klassiker</translation>
    </message>
    <message>
        <source>Animation</source>
        <translation>Animation</translation>
    </message>
    <message>
        <source>Prelinger Archives</source>
        <translation>Prelinger Archives</translation>
    </message>
    <message>
        <source>Comedy</source>
        <translation>Komödie</translation>
    </message>
</context>
<context>
    <name>vellum::DownloadManager</name>
    <message>
        <source>Cannot create downloads folder: %1</source>
        <translation>Der Download-Ordner kann nicht angelegt werden: %1</translation>
    </message>
    <message>
        <source>Not enough free disk space for %1.</source>
        <translation>Nicht genügend freier Speicherplatz für %1.</translation>
    </message>
</context>
<context>
    <name>vellum::PlaybackCoordinator</name>
    <message>
        <source>Playing in mpv (the built-in player couldn&apos;t decode this video).</source>
        <translation>Wiedergabe in mpv (der integrierte Player konnte dieses Video nicht dekodieren).</translation>
    </message>
    <message>
        <source>Playing in VLC (the built-in player couldn&apos;t decode this video).</source>
        <translation>Wiedergabe in VLC (der integrierte Player konnte dieses Video nicht dekodieren).</translation>
    </message>
</context>
<context>
    <name>vellum::SearchAggregator</name>
    <message>
        <source>Timed out</source>
        <translation>Zeitüberschreitung</translation>
    </message>
</context>
<context>
    <name>vellum::SubtitleManager</name>
    <message>
        <source>This is not a file.</source>
        <translation>Das ist keine Datei.</translation>
    </message>
    <message>
        <source>Subtitles failed: %1</source>
        <translation>Untertitel fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>No subtitle cues found in %1</source>
        <translation>Keine Untertitel gefunden in %1</translation>
    </message>
</context>
<context>
    <name>vellum::VideoPlayerManager</name>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Ausfüllen</translation>
    </message>
    <message>
        <source>Stretch</source>
        <translation>Strecken</translation>
    </message>
    <message>
        <source>Playback failed</source>
        <translation>Wiedergabe fehlgeschlagen</translation>
    </message>
</context>
<context>
    <name>vellum::ui::CatalogSearchModel</name>
    <message>
        <source>Search failed: %1</source>
        <translation>Suche fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>No results.</source>
        <translation>Keine Ergebnisse.</translation>
    </message>
    <message>
        <source>Enter a search to browse the catalog.</source>
        <translation>Suchbegriff eingeben, um den Katalog zu durchsuchen.</translation>
    </message>
</context>
<context>
    <name>vellum::ui::DownloadsModel</name>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Saved to %1</source>
        <translation>Gespeichert unter %1</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 · uploaded %2</source>
        <translation>%1 · hochgeladen: %2</translation>
    </message>
    <message>
        <source>Free space: %1</source>
        <translation>Freier Speicher: %1</translation>
    </message>
    <message>
        <source>Streaming</source>
        <translation>Streaming</translation>
    </message>
    <message>
        <source>Seeding</source>
        <translation>Seeding</translation>
    </message>
</context>
<context>
    <name>vellum::ui::HomeModel</name>
    <message>
        <source>Couldn&apos;t reach Vidarium: %1</source>
        <translation>Vidarium ist nicht erreichbar: %1</translation>
    </message>
</context>
<context>
    <name>vellum::ui::InspectorModel</name>
    <message>
        <source>Info hash: %1</source>
        <translation>Info-Hash: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s)</source>
        <translation>
            <numerusform>%n Datei</numerusform>
            <numerusform>%n Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n video</source>
        <translation>
            <numerusform>%n Video</numerusform>
            <numerusform>%n Videos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n tracker(s)</source>
        <translation>
            <numerusform>%n Tracker</numerusform>
            <numerusform>%n Tracker</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>vellum::ui::ItemFiles</name>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Other video files (download only)</source>
        <translation>Weitere Videodateien (nur Download)</translation>
    </message>
</context>
<context>
    <name>vellum::ui::ItemModel</name>
    <message>
        <source>Couldn&apos;t load item files: %1</source>
        <translation>Die Dateien des Eintrags konnten nicht geladen werden: %1</translation>
    </message>
    <message>
        <source>This item is access-restricted and can&apos;t be streamed.</source>
        <translation>Der Zugriff auf diesen Eintrag ist eingeschränkt; er kann nicht gestreamt werden.</translation>
    </message>
    <message>
        <source>No video files found in this item.</source>
        <translation>In diesem Eintrag wurden keine Videodateien gefunden.</translation>
    </message>
    <message>
        <source>No Mac-compatible stream (MP4/M4V/MOV) is available. Other formats can be downloaded.</source>
        <translation>Es gibt keinen Mac-kompatiblen Stream (MP4/M4V/MOV). Andere Formate lassen sich herunterladen.</translation>
    </message>
    <message numerus="yes">
        <source>%n subtitle file(s) will be available in the player.</source>
        <translation>
            <numerusform>%n Untertiteldatei steht im Player zur Verfügung.</numerusform>
            <numerusform>%n Untertiteldateien stehen im Player zur Verfügung.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>vellum::ui::LibraryModel</name>
    <message>
        <source>%1 / %2</source>
        <translation>%1 / %2</translation>
    </message>
</context>
<context>
    <name>vellum::ui::PlayerModel</name>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
</context>
<context>
    <name>vellum::ui::ProviderRowModel</name>
    <message>
        <source>no address set</source>
        <translation>keine Adresse festgelegt</translation>
    </message>
    <message>
        <source>%1 · %2 ms</source>
        <translation>%1 · %2 ms</translation>
    </message>
</context>
<context>
    <name>vellum::ui::SettingsModel</name>
    <message>
        <source>Cache limit: %1 MB</source>
        <translation>Cache-Limit: %1 MB</translation>
    </message>
    <message numerus="yes">
        <source>Auto-clean cache older than %n days</source>
        <translation>
            <numerusform>Cache automatisch leeren: älter als %n Tag</numerusform>
            <numerusform>Cache automatisch leeren: älter als %n Tage</numerusform>
        </translation>
    </message>
    <message>
        <source>Auto-clean cache: never</source>
        <translation>Cache automatisch leeren: nie</translation>
    </message>
    <message>
        <source>Upload rate limit: %1 KB/s</source>
        <translation>Upload-Limit: %1 KB/s</translation>
    </message>
    <message>
        <source>Upload rate limit: unlimited</source>
        <translation>Upload-Limit: unbegrenzt</translation>
    </message>
    <message>
        <source>Cache in use: %1 · Free disk space: %2</source>
        <translation>Cache belegt: %1 · Freier Speicherplatz: %2</translation>
    </message>
</context>
<context>
    <name>vellum::ui::TorrentSearchModel</name>
    <message>
        <source>Any</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: failed</source>
        <translation>%1: fehlgeschlagen</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Suche läuft&#xa0;…</translation>
    </message>
    <message>
        <source>No results.</source>
        <translation>Keine Ergebnisse.</translation>
    </message>
    <message>
        <source>Enter a search to query your enabled providers in parallel.</source>
        <translation>Suchbegriff eingeben, um alle aktiven Anbieter gleichzeitig zu fragen.</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 seeds</source>
        <translation>%1 Seeder</translation>
    </message>
    <message>
        <source>seeds unknown</source>
        <translation>Seeder unbekannt</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Details &amp; Play…</source>
        <translation>Details &amp; Wiedergabe&#xa0;…</translation>
    </message>
    <message>
        <source>Inspect Magnet</source>
        <translation>Magnet-Link ansehen</translation>
    </message>
    <message>
        <source>Open Magnet in Torrent App</source>
        <translation>Magnet-Link in Torrent-App öffnen</translation>
    </message>
    <message>
        <source>Copy Magnet Link</source>
        <translation>Magnet-Link kopieren</translation>
    </message>
    <message>
        <source>Inspect .torrent File</source>
        <translation>.torrent-Datei ansehen</translation>
    </message>
    <message>
        <source>Open Source Page</source>
        <translation>Seite der Quelle öffnen</translation>
    </message>
    <message>
        <source>Copy Info Hash</source>
        <translation>Info-Hash kopieren</translation>
    </message>
</context>
<context>
    <name>vellum::ui::TorrentTable</name>
    <message>
        <source>Licensed: %1</source>
        <translation>Lizenz: %1</translation>
    </message>
    <message>
        <source>Vidarium catalog item · license not stated</source>
        <translation>Eintrag im Vidarium-Katalog · Lizenz nicht angegeben</translation>
    </message>
    <message>
        <source>%1 of %2 results</source>
        <translation>Ergebnisse: %1 von %2</translation>
    </message>
</context>
<context>
    <name>vellum::ui::WindowModel</name>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Discover</source>
        <translation>Entdecken</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Torrent Search</source>
        <translation>Torrent-Suche</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
</TS>
