-- What wixl cannot say: run over the package by scripts/build-msi.sh, one statement a line. VERSION is the package's.

-- Rollback actions: 2 a program inside the package, 18 an installed one, 64 its exit code ignored, 256 and 1024 on rollback, 2048 as the system.
UPDATE CustomAction SET Type = 3394, Source = 'SetupProgram' WHERE Action = 'RegisterRollback'
UPDATE CustomAction SET Type = 3410 WHERE Action = 'UnregisterRollback'
UPDATE CustomAction SET Type = 3410 WHERE Action = 'RestoreRollback'

-- Older versions include this one: 256 and 512 take both ends in.
DELETE FROM Upgrade WHERE ActionProperty = 'OLDERFOUND'
INSERT INTO Upgrade (UpgradeCode, VersionMin, VersionMax, Attributes, ActionProperty) VALUES ('{6F0B6E0C-4E53-4C57-9C1B-2D7A1E95B8A4}', '0.0.0', 'VERSION', 768, 'OLDERFOUND')

-- Components that are installed only when the property was given.
UPDATE Component SET Condition = 'NMARK_ENABLED' WHERE Component = 'DefaultEnabled'
UPDATE Component SET Condition = 'NMARK_ICONS' WHERE Component = 'DefaultIcons'
UPDATE Component SET Condition = 'NMARK_LANGUAGE' WHERE Component = 'DefaultLanguage'
UPDATE Component SET Condition = 'NMARK_ENABLED OR NMARK_ICONS OR NMARK_LANGUAGE' WHERE Component = 'FirstLogon'

-- Properties that an administrator who elevates the installation may pass on.
UPDATE Property SET Value = 'OLDERFOUND;NEWERFOUND;INSTALLDIR;KEPTFOLDER;CURRENTPRODUCT;KEPTENABLED;KEPTICONS;KEPTLANGUAGE;NMARK_ENABLED;NMARK_ICONS;NMARK_LANGUAGE' WHERE Property = 'SecureCustomProperties'
