printf '\357\273\277deviceMAC,ethFatherMAC,apRank\r\na4c3f0000010,000000000000,1\r\n' | algdata import -k ap-rank -
printf '\357\273\277{"deviceMAC":"a4c3f0000010","ethFatherMAC":"000000000000","apRank":1}\n' | algdata import -k ap-rank -
