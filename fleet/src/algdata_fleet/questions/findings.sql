-- Findings by rule and firmware
--
-- Of `algdata check` and `algdata audit`, without notes. The firmware is null if no part of
-- the path has this name.
SELECT day, firmware, severity, rule, count(*) AS findings, count(DISTINCT home) AS homes
FROM (
    SELECT day, firmware, severity, rule, home FROM finding
    UNION ALL
    SELECT day, firmware, severity, rule, home FROM audit
) AS found
WHERE severity <> 'note'
GROUP BY day, firmware, severity, rule
ORDER BY day, firmware, findings DESC, severity, rule
