-- Findings by rule and firmware
--
-- Of `algdata check` and `algdata audit`, without notes. The firmware is null if no part of
-- the path has this name.
--
-- day         firmware  severity  rule            findings  homes
-- 2026-11-20  fw2.4     error     torn-record            6      6
-- 2026-11-20  fw2.4     error     utf-16                 6      6
-- 2026-11-20  fw2.4     warning   missing-device         6      6
-- 2026-11-20  fw2.4     error     father-cycle           4      4
SELECT day, firmware, severity, rule, count(*) AS findings, count(DISTINCT home) AS homes
FROM (
    SELECT day, firmware, severity, rule, home FROM finding
    UNION ALL
    SELECT day, firmware, severity, rule, home FROM audit
) AS found
WHERE severity <> 'note'
GROUP BY day, firmware, severity, rule
ORDER BY day, firmware, findings DESC, severity, rule
